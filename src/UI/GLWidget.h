#pragma once

#include "UI/ViewGrid.h"
#include "Util/Vector3D.h"

#include <QGLWidget>
#include <QImage>
#include <QQuaternion>

#include <array>

namespace Ui {

class MainWindow;
class MainWindowPresenter;

/// The central widget: one orthographic view of the document, with trackball, panning, zoom and
/// grid, and the pointer events that feed picking and the pointer tracker. It holds the state of
/// the view only; the objects draw themselves. Window coordinates are pixels, y downward.
class GLWidget final : public QGLWidget
{
    Q_OBJECT

public:
    GLWidget(MainWindow *parent, MainWindowPresenter &presenter);

    /// Store the flag; the caller repaints.
    void setLighting(bool on) { m_lighting = on; }
    void setRenderObjects(bool on) { m_renderObjects = on; }
    void setRenderEdges(bool on) { m_renderEdges = on; }
    void setRenderGrid(bool on) { m_renderGrid = on; }
    void setSnapToGrid(bool on) { m_snapToGrid = on; }
    void setShowAxes(bool on) { m_showAxes = on; }

    /// World units, applied before the rotation.
    std::array<double, 3> translation() const;
    void setTranslation(double x, double y, double z);
    /// World units per pixel, so that a larger value shows more.
    float zoomFactor() const { return m_zoom; }
    /// Passes over what would show nothing or everything in a pixel: 0, negative or not finite.
    void setZoom(float zoom);
    /// World units; 0 shows no grid.
    float gridSpacing() const { return m_grid.spacing; }
    void setGridSpacing(float spacing) { m_grid.spacing = spacing; }
    /// Degrees about the x, y and z axes, from the view from the top.
    void setView(double angleX, double angleY, double angleZ);

    QQuaternion rotation() const { return m_rotation; }
    const ViewGrid &grid() const { return m_grid; }

    /// The world position of what is drawn at a window position, by the matrices that are current;
    /// a point in the middle of the depth range where nothing is drawn.
    Util::Vector3D unproject(int x, int y);
    /// What the view shows, freshly painted, without alpha.
    QImage image();

public Q_SLOTS:
    void increaseTranslateX();
    void increaseTranslateY();
    void increaseTranslateZ();
    void decreaseTranslateX();
    void decreaseTranslateY();
    void decreaseTranslateZ();

protected:
    void initializeGL() override;
    void resizeGL(int width, int height) override;
    void paintGL() override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    using SpherePoint = std::array<float, 3>;

    void warnOfMissingProperties() const;
    void addKey(const QKeySequence &key, QWidget *window, const char *slot);
    void stepTranslation(unsigned axis, float sign);
    void changeZoom(float zoom);
    void multiplyViewMatrix() const;
    void drawAxes() const;
    SpherePoint spherePoint(double x, double y) const;
    void turnTo(const SpherePoint &point);
    Util::Vector3D snappedIfOn(const Util::Vector3D &position) const;

    float m_zoom = 1.0f;
    bool m_showAxes = false;
    SpherePoint m_lastSphere{1.0f, 0.0f, 0.0f};
    SpherePoint m_currentSphere{1.0f, 0.0f, 0.0f};
    std::array<float, 3> m_translate{};
    Util::Vector3D m_panStart;
    QQuaternion m_rotation;
    bool m_lighting = true;
    bool m_renderObjects = true;
    bool m_renderEdges = false;
    bool m_renderGrid = false;
    bool m_snapToGrid = false;
    ViewGrid m_grid;
    MainWindowPresenter &m_presenter;
};

} // namespace Ui
