#pragma once

#include "platform/qpeapplication.h"

/// The application object of this program. The Escape (Cancel) key is an ordinary key here: nothing takes it
/// before the widget that has the focus, so that it closes documents and dialogs and never hides the program.
/// It does so once each time it is pressed: held down it does nothing more, whatever window is the next to
/// have the focus.
class QPEApplicationEsc : public QPEApplication {
    Q_OBJECT
public:
    QPEApplicationEsc(int &argc, char **argv);
    ~QPEApplicationEsc() override;

    bool eventFilter(QObject *watched, QEvent *event) override;
};
