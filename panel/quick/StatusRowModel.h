#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtQml/qqmlregistration.h>

#include "pwmsafe/PwmSafeStatusRow.h"

namespace noctra {

/// The PWM-safe row for its QML file.
class StatusRowModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool showsToggleRow READ showsToggleRow NOTIFY changed)
    Q_PROPERTY(bool showsWarning READ showsWarning NOTIFY changed)
    Q_PROPERTY(QColor dotColor READ dotColor NOTIFY changed)
    Q_PROPERTY(QColor glowColor READ glowColor NOTIFY changed)
    Q_PROPERTY(QColor statusColor READ statusColor NOTIFY changed)
    Q_PROPERTY(QColor borderColor READ borderColor NOTIFY changed)
    Q_PROPERTY(QColor labelColor READ labelColor NOTIFY changed)
    Q_PROPERTY(QString statusWord READ statusWord NOTIFY changed)
    Q_PROPERTY(bool isOn READ isOn NOTIFY changed)
    Q_PROPERTY(QColor warningColor READ warningColor NOTIFY changed)
    Q_PROPERTY(QString warningText READ warningText NOTIFY changed)
    Q_PROPERTY(bool tooltipShown READ tooltipShown NOTIFY changed)
    Q_PROPERTY(qreal tooltipLift READ tooltipLift NOTIFY changed)
    Q_PROPERTY(QString label READ label CONSTANT)
    Q_PROPERTY(QString tooltipText READ tooltipText CONSTANT)
    Q_PROPERTY(QColor tooltipBorderColor READ tooltipBorderColor CONSTANT)

public:
    /// `row` and `pwmSafeManager` outlive the model.
    StatusRowModel(PwmSafeStatusRow& row, const PwmSafeManager& pwmSafeManager);

    [[nodiscard]] bool showsToggleRow() const { return shown_.showsToggleRow; }
    [[nodiscard]] bool showsWarning() const { return shown_.showsWarning; }
    [[nodiscard]] QColor dotColor() const { return shown_.dotColor; }
    [[nodiscard]] QColor glowColor() const { return shown_.glowColor; }
    [[nodiscard]] QColor statusColor() const { return shown_.statusColor; }
    [[nodiscard]] QColor borderColor() const { return shown_.borderColor; }
    [[nodiscard]] QColor labelColor() const { return shown_.labelColor; }
    [[nodiscard]] QString statusWord() const { return shown_.statusWord; }
    [[nodiscard]] bool isOn() const { return shown_.isOn; }
    [[nodiscard]] QColor warningColor() const { return shown_.warningColor; }
    [[nodiscard]] QString warningText() const { return shown_.warningText; }
    [[nodiscard]] bool tooltipShown() const { return shown_.tooltipShown; }
    [[nodiscard]] qreal tooltipLift() const { return shown_.tooltipLift; }
    [[nodiscard]] static QString label();
    [[nodiscard]] static QString tooltipText();
    [[nodiscard]] static QColor tooltipBorderColor();

    Q_INVOKABLE void toggle() { row_.toggle(); }
    Q_INVOKABLE void hoverWarning(bool inside) { row_.hoverWarning(inside); }
    Q_INVOKABLE void hoverTooltip(bool inside) { row_.hoverTooltip(inside); }
    Q_INVOKABLE void tooltipMeasured(qreal height);

    /// Shows what the row says now.
    void render();

signals:
    void changed();

private:
    struct Shown {
        bool showsToggleRow = false;
        bool showsWarning = false;
        QColor dotColor;
        QColor glowColor;
        QColor statusColor;
        QColor borderColor;
        QColor labelColor;
        QString statusWord;
        bool isOn = false;
        QColor warningColor;
        QString warningText;
        bool tooltipShown = false;
        qreal tooltipLift = 0.0;

        bool operator==(const Shown&) const = default;
    };
    [[nodiscard]] Shown now() const;

    PwmSafeStatusRow& row_;
    const PwmSafeManager& pwmSafeManager_;
    Shown shown_;
};

} // namespace noctra
