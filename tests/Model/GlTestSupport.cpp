#include "GlTestSupport.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QGLFormat>
#include <QWindow>

#include <cmath>

namespace {

constexpr int ComeUpTimeout = 20000; // milliseconds
constexpr double Tolerance = 2.5 / 255.0;

/// A row gives one eye coordinate: to the right, up, and towards the viewer.
struct Rotation
{
    int rows[3][3];
};

const Rotation rotations[] = {
    {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},   // from above
    {{{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}}, // from below
    {{{1, 0, 0}, {0, 0, 1}, {0, -1, 0}}},  // from the front
    {{{-1, 0, 0}, {0, 0, 1}, {0, 1, 0}}},  // from the back
    {{{0, -1, 0}, {0, 0, 1}, {-1, 0, 0}}}, // from the left
    {{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}},   // from the right
};

QGLFormat canvasFormat()
{
    // A single buffer is what is read back, whether it is shown or not.
    return QGLFormat(QGL::SingleBuffer | QGL::DepthBuffer | QGL::Rgba | QGL::NoSampleBuffers |
                     QGL::NoStencilBuffer);
}

} // namespace

std::unique_ptr<GlCanvas> GlTest::s_canvas;

GlCanvas::GlCanvas() : QGLWidget(canvasFormat())
{
    setWindowFlags(Qt::X11BypassWindowManagerHint);
    setAutoBufferSwap(false);
    setGeometry(0, 0, Side, Side);
}

bool GlCanvas::comeUp()
{
    show();
    QElapsedTimer timer;
    timer.start();
    while (!windowHandle() || !windowHandle()->isExposed()) {
        if (timer.elapsed() > ComeUpTimeout)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    makeCurrent();
    return isValid() && QGLContext::currentContext() == context();
}

void GlTest::SetUpTestSuite()
{
    if (!qobject_cast<QApplication *>(QCoreApplication::instance()))
        return;
    s_canvas = std::make_unique<GlCanvas>();
    if (!s_canvas->comeUp())
        s_canvas.reset();
}

void GlTest::TearDownTestSuite()
{
    s_canvas.reset();
}

void GlTest::SetUp()
{
    ASSERT_TRUE(s_canvas) << "these tests need a display with OpenGL";
    s_canvas->makeCurrent();
    prepareState();
    look(FromAbove);
}

void GlTest::TearDown()
{
    if (!s_canvas)
        return;
    EXPECT_EQ(integer(GL_ATTRIB_STACK_DEPTH), 0);
    EXPECT_EQ(integer(GL_PROJECTION_STACK_DEPTH), 1);
    if (HasFailure() && !m_picture.isNull()) {
        const auto *test = ::testing::UnitTest::GetInstance()->current_test_info();
        m_picture.save(QString::fromLatin1(test->name()) + QStringLiteral(".png"));
    }
}

void GlTest::prepareState()
{
    while (integer(GL_ATTRIB_STACK_DEPTH) > 0)
        glPopAttrib();
    glDrawBuffer(GL_FRONT);
    glReadBuffer(GL_FRONT);
    glShadeModel(GL_SMOOTH);
    glDisable(GL_LIGHTING);
    glDisable(GL_DITHER);
    glDisable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
    glDepthMask(GL_TRUE);
    glEnable(GL_CULL_FACE);
    glCullFace(GL_BACK);
    glDisable(GL_POLYGON_OFFSET_FILL);
    glDisable(GL_POLYGON_OFFSET_LINE);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glLineWidth(1);
    glViewport(0, 0, GlCanvas::Side, GlCanvas::Side);
    glMatrixMode(GL_MODELVIEW);
    while (integer(GL_MODELVIEW_STACK_DEPTH) > 1)
        glPopMatrix();
    while (glGetError() != GL_NO_ERROR) {
    }
}

void GlTest::look(View view)
{
    m_view = view;
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(-HalfSide, HalfSide, -HalfSide, HalfSide, m_near, m_far);
    glMatrixMode(GL_MODELVIEW);
    std::array<double, 16> matrix{};
    for (unsigned row = 0; row < 3; ++row)
        for (unsigned column = 0; column < 3; ++column)
            matrix[column * 4 + row] = rotations[view].rows[row][column];
    matrix[15] = 1;
    glLoadMatrixd(matrix.data());
}

void GlTest::showSlab(double farthest, double nearest)
{
    m_near = -nearest;
    m_far = -farthest;
    look(m_view);
}

void GlTest::draw(const std::function<void()> &act)
{
    const Color clear = background();
    glDepthMask(GL_TRUE);
    glClearColor(static_cast<float>(clear[0]), static_cast<float>(clear[1]),
                 static_cast<float>(clear[2]), 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    act();
    glFinish();
    m_picture = QImage(GlCanvas::Side, GlCanvas::Side, QImage::Format_RGBX8888);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, GlCanvas::Side, GlCanvas::Side, GL_RGBA, GL_UNSIGNED_BYTE, m_picture.bits());
    m_picture = m_picture.mirrored();
}

GlTest::Color GlTest::colorAt(double x, double y, double z) const
{
    const auto at = pixelAt(x, y, z);
    const QRgb pixel = m_picture.pixel(at[0], at[1]);
    return {qRed(pixel) / 255.0, qGreen(pixel) / 255.0, qBlue(pixel) / 255.0};
}

void GlTest::expectColorAt(double x, double y, double z, const Color &expected) const
{
    const Color actual = colorAt(x, y, z);
    for (unsigned i = 0; i < 3; ++i)
        EXPECT_NEAR(actual[i], expected[i], Tolerance)
            << "channel " << i << " at (" << x << ", " << y << ", " << z << ")";
}

int GlTest::pixelsOf(const Color &color) const
{
    int count = 0;
    for (int row = 0; row < GlCanvas::Side; ++row)
        for (int column = 0; column < GlCanvas::Side; ++column)
            count += isAlike(column, row, color);
    return count;
}

int GlTest::pixelsOf(const Color &color, const std::array<double, 3> &from,
                     const std::array<double, 3> &to) const
{
    const auto first = pixelAt(from[0], from[1], from[2]);
    const auto last = pixelAt(to[0], to[1], to[2]);
    int count = 0;
    for (int row = std::min(first[1], last[1]); row <= std::max(first[1], last[1]); ++row)
        for (int column = std::min(first[0], last[0]); column <= std::max(first[0], last[0]);
             ++column)
            count += isAlike(column, row, color);
    return count;
}

std::vector<GlTest::Hit> GlTest::pick(const std::function<void()> &act) const
{
    std::array<GLuint, 2048> buffer{};
    glSelectBuffer(static_cast<GLsizei>(buffer.size()), buffer.data());
    glRenderMode(GL_SELECT);
    glInitNames();
    act();
    EXPECT_EQ(integer(GL_NAME_STACK_DEPTH), 0);
    const int count = glRenderMode(GL_RENDER);

    std::vector<Hit> hits;
    std::size_t next = 0;
    const auto distance = [&](GLuint depth) {
        return -(m_near + depth / 4294967295.0 * (m_far - m_near));
    };
    for (int i = 0; i < count; ++i) {
        Hit hit;
        const std::size_t names = buffer[next];
        hit.nearest = distance(buffer[next + 1]);
        hit.farthest = distance(buffer[next + 2]);
        hit.names.assign(buffer.begin() + next + 3, buffer.begin() + next + 3 + names);
        next += 3 + names;
        hits.push_back(hit);
    }
    return hits;
}

GlTest::Color GlTest::over(const Color &below, const Rgba &color)
{
    Color result{};
    for (unsigned i = 0; i < 3; ++i)
        result[i] = color[i] * color[3] + below[i] * (1 - color[3]);
    return result;
}

int GlTest::integer(unsigned name)
{
    GLint value = -1;
    glGetIntegerv(name, &value);
    return value;
}

std::array<double, 16> GlTest::modelview()
{
    std::array<double, 16> matrix{};
    glGetDoublev(GL_MODELVIEW_MATRIX, matrix.data());
    return matrix;
}

std::array<int, 2> GlTest::pixelAt(double x, double y, double z) const
{
    const auto &rows = rotations[m_view].rows;
    const double right = rows[0][0] * x + rows[0][1] * y + rows[0][2] * z;
    const double up = rows[1][0] * x + rows[1][1] * y + rows[1][2] * z;
    return {static_cast<int>(std::floor((HalfSide + right) * PixelsPerUnit)),
            static_cast<int>(std::floor((HalfSide - up) * PixelsPerUnit))};
}

bool GlTest::isAlike(int column, int row, const Color &color) const
{
    const QRgb pixel = m_picture.pixel(column, row);
    return std::abs(qRed(pixel) / 255.0 - color[0]) < Tolerance &&
           std::abs(qGreen(pixel) / 255.0 - color[1]) < Tolerance &&
           std::abs(qBlue(pixel) / 255.0 - color[2]) < Tolerance;
}

void RecordingObject::draw(bool renderObjects, bool renderEdges)
{
    record(false, renderObjects, renderEdges);
}

void RecordingObject::drawForPicking()
{
    record(true, false, false);
}

void RecordingObject::record(bool isPick, bool renderObjects, bool renderEdges)
{
    Call call{isPick, renderObjects, renderEdges, {}, 0};
    glGetDoublev(GL_MODELVIEW_MATRIX, call.matrix.data());
    glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &call.depth);
    m_calls.push_back(call);
    if (m_journal)
        m_journal->push_back(id());

    glColor4dv(color().data());
    glBegin(GL_QUADS);
    glVertex3d(m_x, m_y, 0);
    glVertex3d(m_x + 1, m_y, 0);
    glVertex3d(m_x + 1, m_y + 1, 0);
    glVertex3d(m_x, m_y + 1, 0);
    glEnd();
    if (m_hook)
        m_hook();
}
