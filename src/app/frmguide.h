#pragma once

#include <QDialog>

class GuideBrowser;

/// The guide, opened at its table of keys. Its links lead to its other pages.
class frmGuide : public QDialog {
    Q_OBJECT
public:
    explicit frmGuide(QWidget *parent);

    /// As large as is comfortable to read, if the screen has the room.
    void enlarge();

protected:
    void showEvent(QShowEvent *event) override;

private:
    GuideBrowser *m_browser;
};
