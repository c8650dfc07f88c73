// A library to be preloaded (LD_PRELOAD): lets a program take a file of the right length for a
// frame buffer of 16 bits per pixel, with which the platform linuxfb draws into the file.
//
// FAKE_FRAME_BUFFER  the size in pixels, such as "800x480"
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <linux/fb.h>

namespace {

constexpr unsigned BitsPerPixel = 16;

void answer(unsigned width, unsigned height, fb_fix_screeninfo* fixed)
{
    *fixed = {};
    fixed->line_length = width * BitsPerPixel / 8;
    fixed->smem_len = fixed->line_length * height;
    fixed->visual = FB_VISUAL_TRUECOLOR;
}

void answer(unsigned width, unsigned height, fb_var_screeninfo* variable)
{
    *variable = {};
    variable->xres = variable->xres_virtual = width;
    variable->yres = variable->yres_virtual = height;
    variable->bits_per_pixel = BitsPerPixel;
    variable->red = {11, 5, 0};
    variable->green = {5, 6, 0};
    variable->blue = {0, 5, 0};
}

} // namespace

extern "C" int ioctl(int file, unsigned long request, ...)
{
    va_list arguments;
    va_start(arguments, request);
    void* argument = va_arg(arguments, void*);
    va_end(arguments);
    unsigned width = 0;
    unsigned height = 0;
    const char* size = std::getenv("FAKE_FRAME_BUFFER");
    if (size != nullptr && std::sscanf(size, "%ux%u", &width, &height) == 2) {
        if (request == FBIOGET_FSCREENINFO) {
            answer(width, height, static_cast<fb_fix_screeninfo*>(argument));
            return 0;
        }
        if (request == FBIOGET_VSCREENINFO) {
            answer(width, height, static_cast<fb_var_screeninfo*>(argument));
            return 0;
        }
    }
    using Ioctl = int (*)(int, unsigned long, ...);
    static const auto real = reinterpret_cast<Ioctl>(dlsym(RTLD_NEXT, "ioctl"));
    return real(file, request, argument);
}
