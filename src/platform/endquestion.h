#pragma once

#include <QtGlobal>

/// While one lives, it is open whether the program ends (see QPEApplication::setEndOpen): for what asks its
/// user before the main window closes. May be nested. In an application of another kind it does nothing.
class EndQuestion {
public:
    EndQuestion();
    ~EndQuestion();

private:
    Q_DISABLE_COPY_MOVE(EndQuestion)
};
