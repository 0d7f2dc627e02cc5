#pragma once

#include <cstddef>

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtQml/qqmlregistration.h>

#include "panel/FilterControlView.h"
#include "panel/quick/ButtonStyleValue.h"

namespace noctra {

/// A preset's button for its QML file.
class PresetModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QString label READ label CONSTANT)
    Q_PROPERTY(bool isActive READ isActive NOTIFY changed)
    Q_PROPERTY(noctra::ButtonStyleValue style READ style NOTIFY changed)

public:
    /// `view` outlives the model.
    PresetModel(FilterControlView& view, std::size_t index)
        : view_(view), index_(index), isActive_(view.presetButton(index).isActive) {}

    [[nodiscard]] QString label() const { return toQt(view_.presetButton(index_).label); }
    [[nodiscard]] bool isActive() const { return isActive_; }
    [[nodiscard]] ButtonStyleValue style() const {
        return ButtonStyleValue(PresetButton::style(isActive_));
    }

    Q_INVOKABLE void press() { view_.presetButton(index_).action(); }

    /// Shows what the button says now.
    void render() {
        const bool isActive = view_.presetButton(index_).isActive;
        if (isActive == isActive_)
            return;
        isActive_ = isActive;
        emit changed();
    }

signals:
    void changed();

private:
    FilterControlView& view_;
    const std::size_t index_;
    bool isActive_;
};

} // namespace noctra
