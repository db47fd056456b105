#pragma once

#include <QtGlobal>

/// Keeps the application's requests waiting while it lives (see QPEApplication::holdRequests): for what runs
/// the event loop before it is done. Not to be nested. In an application of another kind it does nothing.
class RequestHold {
public:
    RequestHold();
    ~RequestHold();

private:
    Q_DISABLE_COPY_MOVE(RequestHold)
};
