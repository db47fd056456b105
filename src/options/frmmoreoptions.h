#pragma once

#include <QDialog>

class QCheckBox;
struct MoreSwitch;

/// Lets the user turn what was added to the handheld's program on and off; made for one use and run modally.
///
/// OK puts the switches into the record of settings and writes that; giving them to the window is for whoever
/// ran the dialog. Each switch has its setting's key as its object name.
class frmMoreOptions : public QDialog {
    Q_OBJECT
public:
    explicit frmMoreOptions(QWidget *parent);

public slots:
    void accept() override;

private:
    QWidget *createSwitches();
    QCheckBox *createSwitch(const MoreSwitch &each);
};
