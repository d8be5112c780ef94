#include "UI/GLWidget.h"

#include "Core/PointerTracker.h"
#include "Model/ColorTable.h"
#include "UI/MainWindow.h"
#include "UI/MainWindowPresenter.h"

#include <QDebug>
#include <QGLFormat>
#include <QMatrix4x4>
#include <QMouseEvent>
#include <QShortcut>
#include <QWheelEvent>

#include <GL/glu.h>

#include <algorithm>
#include <cerrno>
#include <cmath>

namespace Ui {

using Model::ColorTable;

namespace {

/// A key press moves the scene by this many pixels.
constexpr float KeyStep = 5.0f;
/// Depth values above this are the cleared background.
constexpr float BackgroundDepth = 0.999999f;
constexpr double SmallestTurn = 1e-12;

QGLFormat viewFormat()
{
    return QGLFormat(QGL::DoubleBuffer | QGL::DepthBuffer | QGL::Rgba | QGL::AlphaChannel |
                     QGL::DirectRendering | QGL::NoAccumBuffer | QGL::NoStencilBuffer |
                     QGL::NoStereoBuffers | QGL::NoOverlay | QGL::NoSampleBuffers);
}

/// Half the depth of the view volume for a view of this size, in pixels: enough for a scene as wide
/// as the window, however it is turned.
int depthRange(int width, int height)
{
    return static_cast<int>(std::sqrt(2.0) * std::max(width, height));
}

void setLight(GLenum light, const std::array<float, 4> &ambient,
              const std::array<float, 4> &diffuse, const std::array<float, 4> &position)
{
    glLightfv(light, GL_AMBIENT, ambient.data());
    glLightfv(light, GL_DIFFUSE, diffuse.data());
    glLightfv(light, GL_POSITION, position.data());
}

} // namespace

GLWidget::GLWidget(MainWindow *parent, MainWindowPresenter &presenter)
    : QGLWidget(viewFormat(), parent),
      m_presenter(presenter)
{
    warnOfMissingProperties();
    setMouseTracking(true);
    addKey(Qt::Key_Q, parent, SLOT(increaseTranslateX()));
    addKey(Qt::Key_W, parent, SLOT(increaseTranslateY()));
    addKey(Qt::Key_E, parent, SLOT(increaseTranslateZ()));
    addKey(Qt::Key_A, parent, SLOT(decreaseTranslateX()));
    addKey(Qt::Key_S, parent, SLOT(decreaseTranslateY()));
    addKey(Qt::Key_D, parent, SLOT(decreaseTranslateZ()));
}

void GLWidget::warnOfMissingProperties() const
{
    const QGLFormat got = format();
    if (!got.doubleBuffer())
        qWarning("Could not get double buffer; results will be suboptimal");
    if (!got.alpha())
        qWarning("Could not get alpha channel; results will be suboptimal");
    if (!got.depth())
        qWarning("Could not get depth buffer; results will be suboptimal");
    if (!got.rgba())
        qWarning("Could not get rgba mode; results will be suboptimal");
    if (!got.directRendering())
        qWarning("Could not get direct rendering; results will be suboptimal");
}

void GLWidget::addKey(const QKeySequence &key, QWidget *window, const char *slot)
{
    connect(new QShortcut(key, window), SIGNAL(activated()), this, slot);
}

std::array<double, 3> GLWidget::translation() const
{
    return {m_translate[0], m_translate[1], m_translate[2]};
}

void GLWidget::setTranslation(double x, double y, double z)
{
    m_translate = {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
    makeCurrent();
    resizeGL(width(), height());
    updateGL();
}

void GLWidget::setZoom(float zoom)
{
    changeZoom(zoom);
}

void GLWidget::changeZoom(float zoom)
{
    // A view with nothing or everything in a pixel could not be brought back by the wheel.
    if (!std::isnormal(zoom) || zoom < 0.0f)
        return;
    m_zoom = zoom;
    makeCurrent();
    resizeGL(width(), height());
    updateGL();
}

void GLWidget::setView(double angleX, double angleY, double angleZ)
{
    const double pi = 4.0 * std::atan2(1.0, 1.0);
    const auto halfTurn = [pi](double degrees) { return degrees / 360.0 * pi; };
    const auto step = [&halfTurn](double degrees, float x, float y, float z) {
        const float sine = static_cast<float>(std::sin(halfTurn(degrees)));
        return QQuaternion(static_cast<float>(std::cos(halfTurn(degrees))), x * sine, y * sine,
                           z * sine);
    };
    m_rotation = QQuaternion();
    m_rotation = m_rotation * step(angleX, 1, 0, 0) * step(angleY, 0, 1, 0) * step(angleZ, 0, 0, 1);
    updateGL();
}

void GLWidget::increaseTranslateX()
{
    stepTranslation(0, 1.0f);
}

void GLWidget::increaseTranslateY()
{
    stepTranslation(1, 1.0f);
}

void GLWidget::increaseTranslateZ()
{
    stepTranslation(2, 1.0f);
}

void GLWidget::decreaseTranslateX()
{
    stepTranslation(0, -1.0f);
}

void GLWidget::decreaseTranslateY()
{
    stepTranslation(1, -1.0f);
}

void GLWidget::decreaseTranslateZ()
{
    stepTranslation(2, -1.0f);
}

void GLWidget::stepTranslation(unsigned axis, float sign)
{
    const float step = sign * KeyStep * m_zoom;
    m_translate[axis] += step;
    // The grid keeps covering the window; it has no extent along z.
    m_grid.moveBy(axis == 0 ? -step : 0.0f, axis == 1 ? -step : 0.0f);
    updateGL();
}

void GLWidget::initializeGL()
{
    glShadeModel(GL_SMOOTH);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glEnable(GL_DEPTH_TEST);
    glCullFace(GL_BACK);
    glEnable(GL_CULL_FACE);

    const std::array<float, 4> specular = {1.0f, 1.0f, 1.0f, 1.0f};
    setLight(GL_LIGHT0, {0.5f, 0.5f, 0.5f, 1.0f}, {0.5f, 0.5f, 0.5f, 1.0f},
             {1.0f, 1.0f, 1.0f, 0.0f});
    glLightfv(GL_LIGHT0, GL_SPECULAR, specular.data());
    setLight(GL_LIGHT1, {0.2f, 0.2f, 0.2f, 1.0f}, {0.3f, 0.3f, 0.3f, 1.0f},
             {-1.0f, -1.0f, -1.0f, 0.0f});
    glEnable(GL_LIGHT1);

    const std::array<float, 4> shine = {0.5f, 0.5f, 0.5f, 1.0f};
    glMaterialfv(GL_FRONT, GL_SPECULAR, shine.data());
    glMaterialf(GL_FRONT, GL_SHININESS, 64.0f);
    glColorMaterial(GL_FRONT, GL_AMBIENT_AND_DIFFUSE);
    glEnable(GL_COLOR_MATERIAL);
}

void GLWidget::resizeGL(int width, int height)
{
    glViewport(0, 0, width, height);
    const double zoom = m_zoom;
    const double halfWidth = width * zoom / 2;
    const double halfHeight = height * zoom / 2;
    const double halfDepth = depthRange(width, height) * zoom / 2;
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(-halfWidth, halfWidth, -halfHeight, halfHeight, -halfDepth, halfDepth);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();

    m_grid.minX = static_cast<float>(-m_translate[0] - halfWidth);
    m_grid.minY = static_cast<float>(-m_translate[1] - halfHeight);
    m_grid.maxX = static_cast<float>(halfWidth - m_translate[0]);
    m_grid.maxY = static_cast<float>(halfHeight - m_translate[1]);
}

void GLWidget::paintGL()
{
    const Util::Vector4D background =
        ColorTable::colorSetting(ColorTable::BackgroundColor, ColorTable::currentScheme());
    glClearColor(static_cast<float>(background[0]), static_cast<float>(background[1]),
                 static_cast<float>(background[2]), 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    if (m_lighting) {
        glEnable(GL_LIGHTING);
        glEnable(GL_LIGHT0);
    } else {
        glDisable(GL_LIGHTING);
        glDisable(GL_LIGHT0);
    }
    glPushMatrix();
    multiplyViewMatrix();
    if (m_renderGrid) {
        glDepthMask(GL_FALSE);
        m_grid.draw();
        glDepthMask(GL_TRUE);
    }
    m_presenter.document().draw(m_renderObjects, m_renderEdges);
    if (m_showAxes)
        drawAxes();
    glPopMatrix();
}

void GLWidget::multiplyViewMatrix() const
{
    QMatrix4x4 turn;
    turn.rotate(m_rotation);
    glMultMatrixf(turn.constData());
    glTranslatef(m_translate[0], m_translate[1], m_translate[2]);
}

void GLWidget::drawAxes() const
{
    const double viewWidth = width() * static_cast<double>(m_zoom);
    const double viewHeight = height() * static_cast<double>(m_zoom);
    const double halfDepth = depthRange(width(), height()) * static_cast<double>(m_zoom) / 2;
    const double length = 0.3 * std::min(viewWidth, viewHeight);
    const double head = 0.9 * length;
    const double barb = 0.1 * length;
    QMatrix4x4 turn;
    turn.rotate(m_rotation);

    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glOrtho(0.0, viewWidth, 0.0, viewHeight, -halfDepth, halfDepth);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glTranslated(0.1 * viewWidth, 0.1 * viewHeight, 0.0);
    glMultMatrixf(turn.constData());
    glPushAttrib(GL_LIGHTING_BIT);
    glDisable(GL_LIGHTING);

    // Each axis with its tip, and the two ends of its head.
    const struct
    {
        float color[3];
        double tip[3];
        double heads[2][3];
    } axes[3] = {
        {{1, 0, 0}, {length, 0, 0}, {{head, 0, barb}, {head, 0, -barb}}},
        {{0, 1, 0}, {0, length, 0}, {{0, head, barb}, {0, head, -barb}}},
        {{0, 0, 1}, {0, 0, length}, {{0, barb, head}, {0, -barb, head}}},
    };
    glLineWidth(2.0f);
    glBegin(GL_LINES);
    for (const auto &axis : axes) {
        glColor3fv(axis.color);
        glVertex3d(0.0, 0.0, 0.0);
        glVertex3dv(axis.tip);
        for (const double(&end)[3] : axis.heads) {
            glVertex3dv(axis.tip);
            glVertex3dv(end);
        }
    }
    glEnd();
    glLineWidth(1.0f);

    glPopAttrib();
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
}

GLWidget::SpherePoint GLWidget::spherePoint(double x, double y) const
{
    const double halfWidth = width() / 2.0;
    const double halfHeight = height() / 2.0;
    const double u = (x - halfWidth) / halfWidth;
    const double v = -(y - halfHeight) / halfHeight;
    const double q = 1.0 - u * u - v * v;
    if (q > 0.0)
        return {static_cast<float>(u), static_cast<float>(v), static_cast<float>(std::sqrt(q))};
    const double r = std::sqrt(u * u + v * v);
    return {static_cast<float>(u / r), static_cast<float>(v / r), 0.0f};
}

void GLWidget::turnTo(const SpherePoint &point)
{
    const SpherePoint &a = m_lastSphere;
    const SpherePoint &c = point;
    const double axis[3] = {static_cast<double>(a[1]) * c[2] - static_cast<double>(a[2]) * c[1],
                            static_cast<double>(a[2]) * c[0] - static_cast<double>(a[0]) * c[2],
                            static_cast<double>(a[0]) * c[1] - static_cast<double>(a[1]) * c[0]};
    const double length = std::sqrt(axis[0] * axis[0] + axis[1] * axis[1] + axis[2] * axis[2]);
    if (length > SmallestTurn) {
        const double dot = static_cast<double>(a[0]) * c[0] + static_cast<double>(a[1]) * c[1] +
                           static_cast<double>(a[2]) * c[2];
        const double h = (dot + 1.0) / 2.0;
        // Rounding can put the two points a little outside the unit sphere, where a root is not
        // real: such a step is left out.
        errno = 0;
        const double scale = std::sqrt(1.0 - h) / length;
        const QQuaternion step(
            static_cast<float>(std::sqrt(h)), static_cast<float>(axis[0] * scale),
            static_cast<float>(axis[1] * scale), static_cast<float>(axis[2] * scale));
        if (errno == 0)
            m_rotation = step * m_rotation;
    }
    m_lastSphere = point;
    updateGL();
}

Util::Vector3D GLWidget::unproject(int x, int y)
{
    GLdouble modelview[16] = {};
    GLdouble projection[16] = {};
    GLint viewport[4] = {};
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    glGetIntegerv(GL_VIEWPORT, viewport);
    const GLint windowY = viewport[3] - y;
    GLfloat depth = 1.0f;
    glReadPixels(x, windowY, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
    if (depth > BackgroundDepth)
        depth = 0.5f;
    GLdouble world[3] = {};
    gluUnProject(x, windowY, static_cast<GLdouble>(depth), modelview, projection, viewport,
                 &world[0], &world[1], &world[2]);
    return {world[0], world[1], world[2]};
}

// Painted into the front buffer: what a double-buffered view shows there is otherwise undefined
// on some renderers until something was drawn into it, and a saved image came out black.
QImage GLWidget::image()
{
    makeCurrent();
    glInit();
    glDrawBuffer(GL_FRONT);
    paintGL();
    glFinish();
    glReadBuffer(GL_FRONT);
    const QImage frame = grabFrameBuffer(false);
    if (format().doubleBuffer()) {
        glDrawBuffer(GL_BACK);
        glReadBuffer(GL_BACK);
    }
    return frame;
}

Util::Vector3D GLWidget::snappedIfOn(const Util::Vector3D &position) const
{
    return m_snapToGrid ? m_grid.snapped(position) : position;
}

void GLWidget::mousePressEvent(QMouseEvent *event)
{
    makeCurrent();
    const int x = event->x();
    const int y = event->y();
    Core::PointerTracker &pointer = m_presenter.workspace().pointer();
    if (event->button() == Qt::LeftButton) {
        if (m_presenter.selection().isSelectionMode()) {
            glPushMatrix();
            multiplyViewMatrix();
            const bool hit = m_presenter.selection().pick(x, y);
            glPopMatrix();
            if (hit)
                updateGL();
        }
        m_lastSphere = spherePoint(x, y);
        pointer.press(Core::PointerTracker::LeftPress, x, y, snappedIfOn(unproject(x, y)));
    } else if (event->button() == Qt::RightButton) {
        m_panStart = unproject(x, y);
        pointer.press(Core::PointerTracker::RightPress, x, y, snappedIfOn(m_panStart));
    }
    event->accept();
}

void GLWidget::mouseMoveEvent(QMouseEvent *event)
{
    makeCurrent();
    const int x = event->x();
    const int y = event->y();
    if (event->buttons() == Qt::LeftButton) {
        m_currentSphere = spherePoint(x, y);
        turnTo(m_currentSphere);
    } else if (event->buttons() == Qt::RightButton) {
        const Util::Vector3D position = unproject(x, y);
        const float dx = static_cast<float>(position[0] - m_panStart[0]);
        const float dy = static_cast<float>(position[1] - m_panStart[1]);
        m_translate[0] += dx;
        m_translate[1] += dy;
        m_grid.moveBy(-dx, -dy);
        m_panStart = position;
        updateGL();
    } else if (event->buttons() == Qt::NoButton) {
        m_presenter.workspace().pointer().move(Core::PointerTracker::NoButton, x, y,
                                               snappedIfOn(unproject(x, y)));
    }
    event->accept();
}

void GLWidget::wheelEvent(QWheelEvent *event)
{
    const int delta = event->angleDelta().y();
    if (delta == 0) {
        event->ignore();
        return;
    }
    const float f = static_cast<float>(delta) * 0.01f;
    changeZoom(delta < 0 ? m_zoom / (1.0f - f) : m_zoom * (1.0f + f));
    event->accept();
}

} // namespace Ui
