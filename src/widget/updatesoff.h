#pragma once

#include <QWidget>

/// Keeps a widget from being repainted between the steps of one change.
class UpdatesOff {
public:
    explicit UpdatesOff(QWidget &widget)
        : m_widget(widget)
        , m_wereOn(widget.updatesEnabled())
    {
        m_widget.setUpdatesEnabled(false);
    }
    ~UpdatesOff() { m_widget.setUpdatesEnabled(m_wereOn); }
    Q_DISABLE_COPY_MOVE(UpdatesOff)

private:
    QWidget &m_widget;
    const bool m_wereOn;
};
