#include "platform/framebuffer.h"

#include "files/sharedfd.h"

#include <QList>

#include <fcntl.h>
#include <linux/fb.h>
#include <sys/ioctl.h>

namespace {

/// Of "key=value" parts behind the platform's name; empty where there is none.
QByteArray optionOf(const QByteArray &platform, const QByteArray &key)
{
    for (const QByteArray &part : platform.split(':').sliced(1)) {
        if (part.startsWith(key + '='))
            return part.sliced(key.size() + 1);
    }
    return {};
}

QSize sizeIn(const QByteArray &text)
{
    const QList<QByteArray> numbers = text.split('x');
    return numbers.size() == 2 ? QSize(numbers[0].toInt(), numbers[1].toInt()) : QSize();
}

QByteArray deviceOf(const QByteArray &platform)
{
    const QByteArray given = optionOf(platform, "fb");
    return given.isEmpty() ? QByteArray("/dev/fb0") : given;
}

QSize sizeOf(const QByteArray &device)
{
    const OpenFd file(::open(device.constData(), O_RDONLY | O_CLOEXEC));
    fb_var_screeninfo info{};
    const bool isKnown = file.number() != -1 && ::ioctl(file.number(), FBIOGET_VSCREENINFO, &info) == 0;
    return isKnown ? QSize(int(info.xres), int(info.yres)) : QSize();
}

} // namespace

QSize frameBufferSize(const QByteArray &platform)
{
    const QSize given = sizeIn(optionOf(platform, "size"));
    if (!given.isEmpty())
        return given;
    return sizeOf(deviceOf(platform));
}

bool hasFrameBuffer(const QByteArray &platform)
{
    return OpenFd(::open(deviceOf(platform).constData(), O_RDWR | O_CLOEXEC)).number() != -1;
}
