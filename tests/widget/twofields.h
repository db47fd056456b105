#pragma once

#include "widget/qmultilineedit.h"

#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

/// A window with a text field above another one, to which the focus can go.
class TwoFields : public QWidget {
public:
    TwoFields()
    {
        auto *const layout = new QVBoxLayout(this);
        layout->addWidget(edit);
        layout->addWidget(other);
        resize(300, 300);
    }
    /// False: the window has not become active in time. Else the text field has the focus.
    bool open()
    {
        show();
        edit->setFocus();
        return QTest::qWaitForWindowActive(this);
    }

    QMultiLineEdit *const edit = new QMultiLineEdit;
    QLineEdit *const other = new QLineEdit;
};
