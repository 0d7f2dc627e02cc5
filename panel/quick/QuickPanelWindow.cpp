#include "panel/quick/QuickPanelWindow.h"

#include <malloc.h>
#include <string>

#include <QtCore/QEvent>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QScreen>
#include <QtQml/QQmlEngine>
#include <QtQml/QQmlError>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickView>

#include "panel/quick/PanelModel.h"

namespace noctra {

namespace {

const QUrl panelFile(QStringLiteral("qrc:/qt/qml/Noctra/Panel/PanelEdge.qml"));

// On a screen with fewer bits per pixel Qt draws nothing and logs a complaint for each line.
constexpr int leastDepth = 15;

bool movesFocus(int key) {
    return key == Qt::Key_Tab || key == Qt::Key_Backtab;
}

} // namespace

QuickPanelWindow::QuickPanelWindow(const PanelServices& services) : services_(services) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

QuickPanelWindow::~QuickPanelWindow() = default;

void QuickPanelWindow::show(const PanelPlace& place) {
    if (const QScreen* const screen = QGuiApplication::primaryScreen();
        screen != nullptr && screen->depth() < leastDepth) {
        services_.log.log("ERROR: The panel cannot be drawn: the screen has " +
                          std::to_string(screen->depth()) + " bits per pixel");
        return;
    }
    // A hidden window is not shown again but made anew: window managers do not always bring one
    // back that they have hidden.
    if (view_ && !view_->isVisible())
        freeScene();
    if (!view_)
        build();
    if (view_->status() != QQuickView::Ready) {
        for (const QQmlError& error : view_->errors())
            services_.log.log("ERROR: The panel cannot be drawn: " +
                              error.toString().toStdString());
        freeScene();
        return;
    }
    const QRect box(place.x, place.y, place.width, place.height);
    // The scene has the scale of this screen before the window exists.
    if (QScreen* const screen = QGuiApplication::screenAt(box.center()))
        view_->setScreen(screen);
    view_->setMinimumSize(box.size());
    view_->setMaximumSize(box.size());
    view_->setGeometry(box);
    if (view_->isVisible())
        return; // only moved: the focus stays where it is
    if (services_.windowMade)
        services_.windowMade(view_->winId());
    view_->show();
    view_->raise();
    view_->requestActivate();
}

void QuickPanelWindow::build() {
    model_ = std::make_unique<PanelModel>(services_, state_);
    view_ = std::make_unique<QQuickView>();
    // Every window manager gives a tool window the focus, and no entry among the tasks.
    view_->setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    view_->setTitle(model_->title());
    view_->setColor(model_->bgDeep());
    view_->setResizeMode(QQuickView::SizeRootObjectToView);
    view_->installEventFilter(this);
    view_->setInitialProperties({{QStringLiteral("panel"), QVariant::fromValue(model_.get())}});
    view_->setSource(panelFile);
    connect(model_.get(), &PanelModel::closeRequested, this, &QuickPanelWindow::askToClose);
}

void QuickPanelWindow::askToClose() const {
    if (closeAsked_)
        closeAsked_();
}

void QuickPanelWindow::close() {
    if (!view_)
        return;
    view_->hide();
    // Later: the call may come from an item of the scene.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (view_ && !view_->isVisible())
                freeScene();
        },
        Qt::QueuedConnection);
}

void QuickPanelWindow::freeScene() {
    // Hidden once more: a press that was under way when it was hidden leaves it noted in Qt as the
    // window with the pressed button, which hide() clears and the destructor does not.
    view_->hide();
    view_.reset();
    model_.reset();
    ::malloc_trim(0); // what the scene took is much more than what runs without it
}

bool QuickPanelWindow::isShown() const {
    return view_ && view_->isVisible();
}

std::uintptr_t QuickPanelWindow::window() const {
    return isShown() ? view_->winId() : 0;
}

bool QuickPanelWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched != view_.get())
        return QObject::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::Close:
        // Not refused: a window that refuses to close keeps the program from ending.
        askToClose();
        return true;
    case QEvent::KeyPress:
        if (movesFocus(static_cast<QKeyEvent*>(event)->key()))
            model_->setShowsFocus(true);
        break;
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
        model_->setShowsFocus(false);
        model_->setTouched(event->type() == QEvent::TouchBegin);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace noctra

extern "C" Q_DECL_EXPORT noctra::PanelWindow*
noctra_make_panel_window(const noctra::PanelServices& services) {
    return new noctra::QuickPanelWindow(services);
}
