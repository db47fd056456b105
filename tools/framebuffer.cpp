// Lets a file pass for the device of a frame buffer, where the kernel has none: loaded before the C library
// (LD_PRELOAD), it answers what programs ask such a device. FRAMEBUFFER_SIZE is its size, such as "1280x800",
// with four bytes a pixel; what is on it is what is in the file.

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include <linux/fb.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

struct Size {
    unsigned width = 0;
    unsigned height = 0;
};

Size givenSize()
{
    Size size;
    const char *const text = std::getenv("FRAMEBUFFER_SIZE");
    if (!text || std::sscanf(text, "%ux%u", &size.width, &size.height) != 2)
        std::abort();
    return size;
}

constexpr unsigned bytesPerPixel = 4;

int tell(fb_fix_screeninfo &info)
{
    info = {};
    info.line_length = givenSize().width * bytesPerPixel;
    info.smem_len = info.line_length * givenSize().height;
    info.type = FB_TYPE_PACKED_PIXELS;
    info.visual = FB_VISUAL_TRUECOLOR;
    return 0;
}

int tell(fb_var_screeninfo &info)
{
    const Size size = givenSize();
    info = {};
    info.xres = info.xres_virtual = size.width;
    info.yres = info.yres_virtual = size.height;
    info.bits_per_pixel = 8 * bytesPerPixel;
    info.red = { 16, 8, 0 };
    info.green = { 8, 8, 0 };
    info.blue = { 0, 8, 0 };
    return 0;
}

} // namespace

extern "C" int ioctl(int file, unsigned long request, ...) noexcept
{
    va_list arguments;
    va_start(arguments, request);
    void *const argument = va_arg(arguments, void *);
    va_end(arguments);
    switch (request) {
    case FBIOGET_FSCREENINFO:
        return tell(*static_cast<fb_fix_screeninfo *>(argument));
    case FBIOGET_VSCREENINFO:
        return tell(*static_cast<fb_var_screeninfo *>(argument));
    case FBIOPUT_VSCREENINFO:
    case FBIOPAN_DISPLAY:
    case FBIOBLANK:
        return 0;
    default:
        return int(::syscall(SYS_ioctl, file, request, argument));
    }
}
