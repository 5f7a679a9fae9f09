#include <QImage>
#include <QX11Info>

#include "QtExtensions/QlirnGLPixmapContext.h"

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLContext.h"
#include "QtExtensions/QlirnGLContextLinux.h"

namespace {

// X drawables are no wider or higher.
constexpr int kMostPixels = 32767;

/** The size of a buffer that @p format asks for; 0 for one it does without. */
int wantedSize(bool wanted, int size)
{
    return wanted ? QlirnGLContextLinux::withDefault(size, 1) : 0;
}

GLXFBConfig chooseConfig(Display* display, QGLFormat format)
{
    do {
        const int accum = wantedSize(format.accum(), format.accumBufferSize());
        const int wantedAlpha = wantedSize(format.alpha(), format.alphaBufferSize());
        // clang-format off
        const int attribs[] = {
            GLX_DRAWABLE_TYPE, GLX_PBUFFER_BIT,
            GLX_RENDER_TYPE, GLX_RGBA_BIT,
            GLX_DOUBLEBUFFER, 0,
            GLX_RED_SIZE, QlirnGLContextLinux::withDefault(format.redBufferSize(), 8),
            GLX_GREEN_SIZE, QlirnGLContextLinux::withDefault(format.greenBufferSize(), 8),
            GLX_BLUE_SIZE, QlirnGLContextLinux::withDefault(format.blueBufferSize(), 8),
            GLX_ALPHA_SIZE, wantedAlpha,
            GLX_DEPTH_SIZE, wantedSize(format.depth(), format.depthBufferSize()),
            GLX_STENCIL_SIZE, wantedSize(format.stencil(), format.stencilBufferSize()),
            GLX_ACCUM_RED_SIZE, accum,
            GLX_ACCUM_GREEN_SIZE, accum,
            GLX_ACCUM_BLUE_SIZE, accum,
            0};
        // clang-format on
        int count = 0;
        if (GLXFBConfig* configs = glXChooseFBConfig(display, QX11Info::appScreen(), attribs, &count)) {
            // GLX sorts the largest colour buffers to the front; a port's bit depths are those of its window.
            GLXFBConfig config = count > 0 ? configs[0] : nullptr;
            for (int i = 0; i < count; ++i) {
                int alpha = 0;
                if (glXGetFBConfigAttrib(display, configs[i], GLX_ALPHA_SIZE, &alpha) == 0 && alpha == wantedAlpha) {
                    config = configs[i];
                    break;
                }
            }
            XFree(configs);
            if (config)
                return config;
        }
    } while (QlirnGLContext::reduceQGLFormatRequirement(format));
    return nullptr;
}

} // namespace

QlirnGLPixmapContext::QlirnGLPixmapContext(int width, int height, const QGLFormat& format)
    : fWidth(width), fHeight(height), fDisplay(QX11Info::display())
{
    if (width > kMostPixels || height > kMostPixels)
        return;
    const GLXFBConfig config = fDisplay ? chooseConfig(fDisplay, format) : nullptr;
    if (!config)
        return;
    const int attribs[] = {GLX_PBUFFER_WIDTH, width, GLX_PBUFFER_HEIGHT, height, GLX_PRESERVED_CONTENTS, 1, 0};
    fPbuffer = glXCreatePbuffer(fDisplay, config, attribs);
    if (!fPbuffer)
        return;
    // The server may have granted less than was asked for.
    unsigned gotWidth = 0;
    unsigned gotHeight = 0;
    glXQueryDrawable(fDisplay, fPbuffer, GLX_WIDTH, &gotWidth);
    glXQueryDrawable(fDisplay, fPbuffer, GLX_HEIGHT, &gotHeight);
    if (gotWidth < unsigned(width) || gotHeight < unsigned(height))
        return;
    fContext = glXCreateNewContext(fDisplay, config, GLX_RGBA_TYPE,
                                   QlirnGLContext::nativeContext(Q3dPort::resourceContext()), QlirnX11::kTrue);
}

QlirnGLPixmapContext::~QlirnGLPixmapContext()
{
    if (fContext) {
        if (glXGetCurrentContext() == fContext)
            glXMakeCurrent(fDisplay, QlirnX11::kNone, nullptr);
        glXDestroyContext(fDisplay, fContext);
        T3dPort::nativeBindingMoved();
    }
    if (fPbuffer)
        glXDestroyPbuffer(fDisplay, fPbuffer);
}

bool QlirnGLPixmapContext::makeCurrent()
{
    if (!fContext)
        return false;
    if (glXGetCurrentContext() == fContext)
        return true;
    T3dPort::nativeBindingMoved();
    return glXMakeCurrent(fDisplay, fPbuffer, fContext);
}

QPixmap QlirnGLPixmapContext::read() const
{
    QImage image(fWidth, fHeight, QImage::Format_RGB32);
    if (image.isNull())
        return QPixmap();
    glFinish();
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glPixelStorei(GL_PACK_ROW_LENGTH, 0);
    glPixelStorei(GL_PACK_SKIP_ROWS, 0);
    glPixelStorei(GL_PACK_SKIP_PIXELS, 0);
    glReadBuffer(GL_FRONT);
    glReadPixels(0, 0, fWidth, fHeight, GL_BGRA, GL_UNSIGNED_INT_8_8_8_8_REV, image.bits());
    glPopClientAttrib();
    return QPixmap::fromImage(image.mirrored());
}
