#pragma once

#include <QScrollBar>

/// A scroll bar that is repainted only where its picture changes: nothing when the slider stays on its
/// pixels, else the slider's ends. Drawing all of a bar costs more than the text of a view, and a bar is
/// changed by every key that adds a row. With styles that are not known to draw the slider's middle the same
/// everywhere all of it is repainted.
class ViewScrollBar : public QScrollBar {
    Q_OBJECT
public:
    /// Makes one change of all while it lives: where the slider is in between is not painted.
    class OneChange {
    public:
        explicit OneChange(ViewScrollBar &bar);
        ~OneChange();
        Q_DISABLE_COPY_MOVE(OneChange)
    private:
        ViewScrollBar &m_bar;
    };

    explicit ViewScrollBar(Qt::Orientation orientation, QWidget *parent = nullptr);

    /// Makes the range 0..last. rangeChanged() is emitted only when there is something to scroll now or no
    /// more: the scroll area lays out its parts and repaints both bars whenever it hears it.
    void setLast(int last);

protected:
    void sliderChange(SliderChange change) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QRect sliderRect() const;
    void updateEnds(int before, int after);

    QRect m_slider; ///< as it was asked to be painted last
    bool m_isChanging = false; ///< while a OneChange lives
    bool m_hasChanged = false; ///< meanwhile
    bool m_scrolls = false; ///< whether there was anything to scroll then; the bar is drawn dimmed otherwise
};
