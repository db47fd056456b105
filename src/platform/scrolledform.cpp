#include "platform/scrolledform.h"

#include <QApplication>
#include <QEvent>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>
#include <QWindow>

namespace {

/// What surrounds a form on the screen: a guess until the window manager has put it there.
QMargins frameOf(const QWidget *form)
{
    const QWindow *const window = form->windowHandle();
    const QMargins frame = window ? window->frameMargins() : QMargins();
    if (!frame.isNull())
        return frame;
    return { 0, form->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, form), 0, 0 };
}

/// What a form may take of its screen with all of its frame.
QSize roomInFrame(const QWidget *form)
{
    return form->screen()->availableSize().shrunkBy(frameOf(form));
}

/// The same where the sides of the frame may be outside of the screen, which is better than scroll bars.
QSize roomFor(const QWidget *form)
{
    const QMargins frame = frameOf(form);
    return form->screen()->availableSize() - QSize(0, frame.top() + frame.bottom());
}

/// The size that shows `content` whole, or as much as `room` has, with the scroll bars that this takes.
QSize sizeWithBars(const QScrollArea &area, QSize content, QSize room)
{
    const int across = area.verticalScrollBar()->sizeHint().width();
    const int down = area.horizontalScrollBar()->sizeHint().height();
    const bool isTooWide = content.width() > room.width();
    const bool isTooHigh = content.height() + (isTooWide ? down : 0) > room.height();
    const bool isTooWideThen = isTooWide || (isTooHigh && content.width() + across > room.width());
    const QSize bars(isTooHigh ? across : 0, isTooWideThen ? down : 0);
    return (content + bars).boundedTo(room);
}

void showControl(QScrollArea &area, const QWidget &control)
{
    const QRect place(control.mapTo(area.widget(), QPoint()), control.size());
    area.ensureVisible(place.right() + 1, place.bottom() + 1, 0, 0);
    area.ensureVisible(place.left(), place.top(), 0, 0);
}

/// Takes a form's place for its layout and everything in it.
class FormArea : public QScrollArea {
public:
    explicit FormArea(QWidget *form)
        : QScrollArea(form)
    {
        setFrameShape(QFrame::NoFrame);
        setFocusPolicy(Qt::NoFocus);
        setWidgetResizable(true);
        auto *const content = new QWidget(this);
        content->setLayout(form->layout());
        setWidget(content);
        auto *const around = new QVBoxLayout(form);
        around->setContentsMargins(0, 0, 0, 0);
        around->addWidget(this);
        showFocusIn(this);
    }

    QSize sizeHint() const override
    {
        return sizeWithBars(*this, widget()->minimumSizeHint(), roomFor(window()));
    }
    QSize minimumSizeHint() const override { return QSize(1, 1); }
};

class FormWatcher : public QObject {
public:
    explicit FormWatcher(QWidget *form)
        : QObject(form)
        , m_form(form)
    {
        form->installEventFilter(this);
    }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Show && !event->spontaneous())
            fit();
        if (event->type() == QEvent::WindowActivate)
            fitFrame();
        return QObject::eventFilter(object, event);
    }

private:
    void fit()
    {
        const QSize room = roomFor(m_form);
        const QSize needed = m_form->layout()->totalMinimumSize();
        if (!m_area && needed.boundedTo(room) != needed)
            scroll();
        const QSize size =
            m_area ? m_area->sizeHint() : m_form->size().boundedTo(roomInFrame(m_form)).expandedTo(needed);
        if (size != m_form->size())
            m_form->resize(size);
        if (m_form->testAttribute(Qt::WA_Moved))
            moveIntoScreen();
    }
    /// The frame, which is there now, may be larger than it was thought to be.
    void fitFrame()
    {
        if (m_form->size().boundedTo(roomInFrame(m_form)) == m_form->size())
            return;
        fit();
        const QRect screen = m_form->screen()->availableGeometry();
        const QMargins frame = frameOf(m_form);
        const bool isTooWide = m_form->width() > screen.width() - frame.left() - frame.right();
        m_form->move(screen.topLeft() - QPoint(isTooWide ? frame.left() : 0, 0));
    }
    void scroll()
    {
        QWidget *const focus = m_form->focusWidget();
        m_area = new FormArea(m_form);
        m_form->setMinimumSize(0, 0); // which the layout had set
        m_form->layout()->activate();
        m_area->show();
        if (focus)
            focus->setFocus();
    }
    /// Asks for no frame, which there is none of before the window is on the screen.
    void moveIntoScreen()
    {
        const QRect screen = m_form->screen()->availableGeometry();
        const QRect place = m_form->geometry();
        const QPoint last = screen.bottomRight() - place.bottomRight() + place.topLeft();
        const QPoint inside(qMax(screen.left(), qMin(place.left(), last.x())),
            qMax(screen.top(), qMin(place.top(), last.y())));
        if (inside != place.topLeft())
            m_form->move(inside);
    }

    QWidget *m_form;
    FormArea *m_area = nullptr;
};

} // namespace

void scrollWhereTooLarge(QWidget *form)
{
    new FormWatcher(form);
}

void showFocusIn(QScrollArea *area)
{
    QObject::connect(qApp, &QApplication::focusChanged, area, [area](const QWidget *, QWidget *now) {
        if (now && area->isAncestorOf(now))
            showControl(*area, *now);
    });
}
