#pragma once

#include <memory>

#include <QtCore/QPointer>
#include <QtQml/qqmlregistration.h>

#include "panel/FaderKeys.h"
#include "panel/FaderNSView.h"
#include "panel/Layer.h"
#include "panel/quick/FaderSource.h"
#include "panel/quick/FrameTicker.h"
#include "panel/quick/GridItem.h"
#include "panel/quick/LayerItem.h"

namespace noctra {

/// Shows a source's fader and hands it the mouse, the wheel and the keys.
///
/// The fader's view is made when the item first has a source and a size, and kept until it has
/// another source.
class FaderItem : public GridItem, private LayerHost {
    Q_OBJECT
    Q_PROPERTY(noctra::FaderSource* source READ source WRITE setSource NOTIFY sourceChanged)
    /// Changes from outside glide; false for reduced motion.
    Q_PROPERTY(bool animates READ animates WRITE setAnimates NOTIFY animatesChanged)
    /// Else the wheel is for what lies beneath.
    Q_PROPERTY(bool takesWheel MEMBER takesWheel_ NOTIFY takesWheelChanged)
    Q_PROPERTY(bool dragging READ isDragging NOTIFY draggingChanged)
    // By the names under which assistive technology looks for them. Writing the value is what a
    // user does; it goes to the nearest step.
    Q_PROPERTY(double value READ value WRITE setValue NOTIFY valueChanged)
    Q_PROPERTY(double minimumValue READ minimumValue NOTIFY minimumValueChanged)
    Q_PROPERTY(double maximumValue READ maximumValue CONSTANT)
    Q_PROPERTY(double stepSize READ stepSize CONSTANT)
    QML_ELEMENT

public:
    explicit FaderItem(QQuickItem* parent = nullptr);
    ~FaderItem() override;

    [[nodiscard]] FaderSource* source() const { return source_; }
    void setSource(FaderSource* source);
    [[nodiscard]] bool animates() const { return animates_; }
    void setAnimates(bool animates);

    [[nodiscard]] bool isDragging() const { return shown_.dragging; }
    [[nodiscard]] double value() const { return shown_.value; }
    void setValue(double value);
    [[nodiscard]] double minimumValue() const { return shown_.minimum; }
    [[nodiscard]] double maximumValue() const { return 1.0; }
    [[nodiscard]] double stepSize() const { return faderValueOf(fader_keys::arrowStep); }

    /// Null while there is nothing to show.
    [[nodiscard]] const FaderNSView* view() const { return view_.get(); }
    /// Slot and marks, the fill, the cap: from back to front.
    [[nodiscard]] const LayerItem& backdropItem() const { return *backdrop_; }
    [[nodiscard]] const LayerItem& fillItem() const { return *fill_; }
    [[nodiscard]] const LayerItem& capItem() const { return *cap_; }

signals:
    void sourceChanged();
    void animatesChanged();
    void takesWheelChanged();
    void draggingChanged();
    void valueChanged();
    void minimumValueChanged();

protected:
    void arrange() override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// What the properties say, as last announced.
    struct Shown {
        bool dragging = false;
        double value = 0.0;
        double minimum = 0.0;
    };

    void layerChanged(const Layer& layer, LayerChange change) override;
    void render();
    void makeView(const NativeSliderView& slider);
    void dropView();
    [[nodiscard]] bool isGliding() const;
    void setByUser(double value, bool glides);
    void announce();

    QPointer<FaderSource> source_;
    bool animates_ = true;
    bool takesWheel_ = true;
    Shown shown_;
    std::unique_ptr<FaderNSView> view_;
    LayerItem* const backdrop_;
    LayerItem* const fill_;
    LayerItem* const cap_;
    FrameTicker ticker_;
    FaderWheel wheel_;
};

} // namespace noctra
