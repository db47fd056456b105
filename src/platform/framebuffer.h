#pragma once

#include <QByteArray>
#include <QSize>

/// Device pixels of the frame buffer that a platform such as "linuxfb:fb=/dev/fb1:size=240x320" names; the
/// first device where it names none. Empty where there is no such device. Cost: a call to the system.
QSize frameBufferSize(const QByteArray &platform);

/// Whether that device is there and may be drawn on. Cost: a call to the system.
bool hasFrameBuffer(const QByteArray &platform);
