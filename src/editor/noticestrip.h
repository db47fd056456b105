#pragma once

#include "editor/notice.h"

#include <QDeadlineTimer>
#include <QWidget>

#include <optional>
#include <span>

class NoticeQueue;
class QLabel;
class QMenu;
class QToolButton;

/// One line that shows the heaviest notice of a queue about the current document or the program, with a
/// button for each of its offers. Hidden while there is none.
///
/// It shortens its text before it hides an offer; offers that have no room are in a menu at their end. The
/// keys come into it by takeKeys() alone, or by pen: Tab and the arrows go round in it, Return and Space
/// press, Escape leaves it and does what the notice has for it. It acts on nothing itself. A click is for the
/// notice that was shown when it began, and of a double click the first half counts: the second would meet
/// the notice that comes next.
class NoticeStrip : public QWidget {
    Q_OBJECT
public:
    /// `queue` is not owned and lives longer.
    NoticeStrip(NoticeQueue &queue, QWidget *parent);

    /// The document whose notices are shown; null: those about the program alone.
    void setDocument(const QObject *document);

    /// Whether the last notice has gone by itself, so lately that who asks for it may not know.
    bool hasJustGone() const;
    /// Whether the keys go to one of its buttons.
    bool hasKeys() const;
    /// Gives the keys to the first offer, and shows all of a shortened text; nothing while hidden.
    void takeKeys();

    QSize sizeHint() const override;

signals:
    /// An offer was chosen; `act` does what it says.
    void chosen(const std::function<void()> &act);
    /// Escape was pressed, or the notice has gone that had the keys.
    void keysGivenBack();
    /// It has appeared or gone.
    void toggled();
    /// Chosen in the menu that the strip has besides its offers.
    void moreOptionsWanted();

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool eventFilter(QObject *button, QEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    /// Where what it offers is other than before, it is another notice too.
    struct Shown {
        NoticeKind kind;
        const QObject *about;
        QStringList offers;
        bool operator==(const Shown &) const = default;
    };

    QToolButton *createButton();
    void nameControls();
    void nameText();
    static std::optional<Shown> shownOf(const Notice *notice);
    void refresh();
    void showNotice(const Notice &notice);
    void showOffer(QToolButton &button, const NoticeOffer &offer);
    void fill(QMenu &menu, std::span<const NoticeOffer> offers);
    void press(const QToolButton *button);
    void pressByKey(QToolButton &button);
    void choose(const std::function<void()> &act);
    void dismiss();
    void escape();
    void showWholeText(QPoint globalPlace);
    void announce();

    void layOut();
    qsizetype offersThatFit(int room) const;
    QString shortenedText(int room) const;
    QList<QToolButton *> shownButtons() const;

    NoticeQueue &m_queue;
    const QObject *m_document = nullptr;
    std::optional<Shown> m_shown;
    bool m_isChosen = false; ///< something that was offered, just now
    QDeadlineTimer m_gone; ///< runs while one that has gone by itself is meant
    std::optional<Shown> m_pressed; ///< what was shown when a button went down
    QString m_text; ///< of the notice, whole
    QString m_spoken; ///< what assistive tools were told last
    std::function<void()> m_escaped;
    std::vector<NoticeOffer> m_offers;
    QLabel *m_label;
    QList<QToolButton *> m_buttons; ///< one for each offer
    QToolButton *m_more; ///< the menu of the offers that have no room
    QToolButton *m_dismiss;
};
