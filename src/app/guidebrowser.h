#pragma once

#include <QTextBrowser>

class QTextTable;

/// Shows pages of the guide, which are files in Markdown. Where a page has the table of keys, it is shown as
/// it is now, in the present language and with what is switched on. Pictures are as wide as the browser at
/// most; links to what is no page are none.
class GuideBrowser : public QTextBrowser {
    Q_OBJECT
public:
    explicit GuideBrowser(QWidget *parent = nullptr);

    /// The guide in the present language, or in English where there is none; the table of keys alone where
    /// the guide is not installed.
    void showGuide();
    /// Scrolls to the title of the table of keys. Only where the browser is laid out on the screen.
    void showKeys();

protected:
    /// Of pages that are there alone.
    void doSetSource(const QUrl &name, QTextDocument::ResourceType type) override;
    QVariant loadResource(int type, const QUrl &name) override;
    /// What is shown first stays so when the width changes.
    bool event(QEvent *event) override;
    /// Ctrl+Home and Ctrl+End lead to its ends, as Home and End do.
    void keyPressEvent(QKeyEvent *event) override;

private:
    QTextTable *keys() const;
    bool resized(QEvent *event);
    void showBarBelow();
    QTextBlock firstShown() const;
    /// In the text.
    QRectF placeOf(const QTextBlock &block) const;
};
