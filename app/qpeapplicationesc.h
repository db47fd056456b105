#pragma once

#include "platform/qpeapplication.h"

/// The application object of this program. The Escape (Cancel) key is an ordinary key here: nothing takes it
/// before the widget that has the focus, so that it closes documents and dialogs and never hides the program.
class QPEApplicationEsc : public QPEApplication {
    Q_OBJECT
public:
    using QPEApplication::QPEApplication;
    ~QPEApplicationEsc() override;
};
