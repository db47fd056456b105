#pragma once

#include "platform/qmultilineedit.h"

#include <QColor>

/// The editing control of one open document: its text, name, codes, marks and colours.
class ctlEditer : public QMultiLineEdit {
    Q_OBJECT
public:
    explicit ctlEditer(QWidget *parent);
    ~ctlEditer() override;

    /// Folder, ending in "/"; empty for a document never saved.
    QString path() const;
    QString name() const;
    int charCode() const;
    int returnCode() const;
    QString charCodeName() const;
    QString returnCodeName() const;
    bool undoAvailable() const;
    bool redoAvailable() const;

    /// Reads path + name; `requested` is a CharCode, 0 to detect. Failures are told to the user; then text,
    /// codes and history stay, but path and name are the new ones.
    void loadFile(const QString &path, const QString &name, int requested);
    /// As loadFile, always detecting.
    void reload(const QString &path, const QString &name);
    /// Writes the text as path + name; 0 keeps the document's own code or line end. False after telling the
    /// user.
    bool saveFile(const QString &path, const QString &name, int charCode = 0, int returnCode = 0);

    void applyFont();
    void applyWrapMode();
    void applyRowNoMargin();
    void applyActiveLineColor();
    void applyColors();

    /// The colour of an index 1..17; white for any other.
    static QColor colorOfIndex(int index);

public slots:
    /// Copies the selection and removes it: nothing stays marked.
    void copy() override;
    void slotEdUndoAvailable(bool available);
    void slotEdRedoAvailable(bool available);

signals:
    void undoAvailable2(ctlEditer *editor, bool available);
    void redoAvailable2(ctlEditer *editor, bool available);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
