#pragma once

#include "files/filecalls.h"

#include <QPointer>
#include <QWidget>

#include <functional>

class DocumentArea;
class DocumentLoader;
class DocumentSaver;
class QLabel;
class QMenu;
class QToolButton;
class ctlEditer;

/// One line below the tabs that says where the cursor of the current document is and what is selected, its
/// code and line end, whether it can be written and whether typing overwrites, and its file. The fields are
/// buttons for what they say. Shown where the settings want it.
///
/// It looks at the document after each repaint of its view, which comes at most once a frame: so a key costs
/// nothing more. What has no room at the right is left out.
class StatusLine : public QWidget {
    Q_OBJECT
public:
    /// A child of the documents, for whoever gives it its place.
    StatusLine(DocumentArea &documents, DocumentLoader &loader, DocumentSaver &saver,
        const FileCalls &calls = FileCalls::system());

    /// Comes or goes.
    void applySettings();

    QSize sizeHint() const override;
    bool eventFilter(QObject *viewport, QEvent *event) override;

signals:
    /// A line to go to is wanted.
    void jumpWanted();

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QToolButton *createButton();
    QToolButton *createMenuButton(void (StatusLine::*fill)(QMenu &menu));
    void follow(ctlEditer *editor);
    void look();
    void lookAtFile();
    void showPlace(const ctlEditer &editor);
    static void setField(QWidget &field, const QString &text, const QString &tip);
    void nameControls();
    void layOut();

    void fillCodes(QMenu &menu);
    void fillLineEnds(QMenu &menu);
    void add(QMenu &menu, const QString &text, const std::function<void()> &act);
    void toggleOverwriting();

    DocumentArea &m_documents;
    DocumentLoader &m_loader;
    DocumentSaver &m_saver;
    const FileCalls &m_calls;
    QPointer<ctlEditer> m_editor; ///< the current one
    QToolButton *m_place;
    QToolButton *m_code;
    QToolButton *m_lineEnd;
    QToolButton *m_typing;
    QLabel *m_readOnly;
    QLabel *m_file;
    QString m_fileName;
    bool m_canWrite = true;
};
