#pragma once

#include <QDialog>

class QLineEdit;

/// Asks for the number of a line. It is not checked against any document.
class frmJumpTo : public QDialog {
    Q_OBJECT
public:
    explicit frmJumpTo(QWidget *parent);

    qint64 lineNo = 0; ///< the number that was accepted

public slots:
    void accept() override;

private:
    QLineEdit *m_line;
};
