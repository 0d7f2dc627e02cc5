#include "tests/panel/window/PanelScene.h"

#include <dlfcn.h>
#include <stdexcept>
#include <vector>

#include <QtGui/QGuiApplication>
#include <QtGui/QWheelEvent>
#include <QtTest/QTest>

namespace noctra {

namespace {

void failOnComplaint(QtMsgType type, const QMessageLogContext&, const QString& message) {
    // The offscreen platform has no stack of windows and no limits to their sizes, the program
    // makes one window only, and some tests drag out of it.
    static const QStringList expected{
        QStringLiteral("This plugin does not support raise()"),
        QStringLiteral("This plugin does not support propagateSizeHints()"),
        QStringLiteral("Scenegraph already initialized, setBackend() request ignored")};
    if (type != QtDebugMsg && type != QtInfoMsg && !expected.contains(message) &&
        !message.contains(QLatin1String("occurs outside target window")))
        ADD_FAILURE() << "the toolkit complains: " << message.toStdString();
}

/// Stays loaded, like the program's.
MakePanelWindow* library() {
    void* loaded = ::dlopen(NOCTRA_PANEL_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    void* symbol = loaded == nullptr ? nullptr : ::dlsym(loaded, makePanelWindowSymbol);
    if (symbol == nullptr)
        throw std::runtime_error(::dlerror());
    return reinterpret_cast<MakePanelWindow*>(symbol);
}

QQuickItem* visibleItem(QQuickItem* parent, const QString& name) {
    if (parent == nullptr || !parent->isVisible())
        return nullptr;
    if (parent->objectName() == name)
        return parent;
    for (QQuickItem* child : parent->childItems())
        if (QQuickItem* found = visibleItem(child, name))
            return found;
    return nullptr;
}

} // namespace

PanelScene::PanelScene()
    : resources({NOCTRA_RESOURCES}),
      services(panelServices(
          *this, [] { return std::string("the log"); }, resources, fonts)) {
    qInstallMessageHandler(failOnComplaint);
    for (const char* name : {"Anybody-Bold", "Anybody-ExtraBold"})
        fonts.registerFont(resources.path(name, "ttf").value());
    panel.reset(library()(services));
    panel->onCloseAsked([this] { panel->close(); });
}

PanelScene::~PanelScene() {
    panel.reset();
    qInstallMessageHandler(nullptr);
}

void PanelScene::open(int height) {
    const int edges = PanelEdge::across(QGuiApplication::primaryScreen()->devicePixelRatio());
    panel->show({0, 0, 320 + edges, height + edges});
    ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
    settle();
}

QQuickWindow* PanelScene::window() {
    for (QWindow* one : QGuiApplication::allWindows())
        if (auto* found = qobject_cast<QQuickWindow*>(one))
            return found;
    return nullptr;
}

void PanelScene::settle() {
    // What the queue does may post events, and the other way round.
    for (int turn = 0; turn < 3; ++turn) {
        desktop.settle();
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

void PanelScene::advance(Seconds time) {
    settle();
    for (long frames = std::lround(time / frame); frames > 0; --frames) {
        desktop.advance(frame);
        settle();
        driver.advance();
        settle();
    }
}

QQuickItem* PanelScene::find(const QString& name) {
    return window() == nullptr ? nullptr : visibleItem(window()->contentItem(), name);
}

QQuickItem& PanelScene::item(const QString& name) {
    if (QQuickItem* found = find(name))
        return *found;
    throw std::runtime_error("There is no " + name.toStdString());
}

QQuickItem& PanelScene::content() {
    return *window()->contentItem()->childItems().first()->childItems().first();
}

QPoint PanelScene::inWindow(QPoint point) {
    return content().mapToScene(point).toPoint();
}

QRectF PanelScene::box(const QString& name) {
    const QQuickItem& one = item(name);
    return one.mapRectToItem(&content(), {0.0, 0.0, one.width(), one.height()});
}

QObject& PanelScene::model() {
    const QQuickItem* root = window()->contentItem()->childItems().first();
    return *root->property("panel").value<QObject*>();
}

QString PanelScene::focused() {
    const QQuickItem* focus = window()->activeFocusItem();
    return focus == nullptr ? QString() : focus->objectName();
}

void PanelScene::press(QPoint point, Qt::MouseButton button) {
    QTest::mousePress(window(), button, {}, inWindow(point));
    settle();
}

void PanelScene::release(QPoint point, Qt::MouseButton button) {
    QTest::mouseRelease(window(), button, {}, inWindow(point));
    settle();
}

void PanelScene::move(QPoint point) {
    QTest::mouseMove(window(), inWindow(point));
    settle();
}

void PanelScene::click(QPoint point, Qt::MouseButton button) {
    press(point, button);
    release(point, button);
}

void PanelScene::wheel(QPoint point, int units) {
    const QPoint there = inWindow(point);
    QWheelEvent event(there, window()->mapToGlobal(there), {}, {0, units}, {}, {},
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(window(), &event);
    settle();
}

void PanelScene::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(window(), key, modifiers);
    settle();
}

void PanelScene::openSheet() {
    click("gear");
    advance(Seconds(1.5));
}

QImage PanelScene::grab() {
    const double scale = window()->effectiveDevicePixelRatio();
    return window()->grabWindow().copy(PanelEdge::width, PanelEdge::width,
                                       qRound(content().width() * scale),
                                       qRound(content().height() * scale));
}

} // namespace noctra
