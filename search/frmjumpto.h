#pragma once

#include <QDialog>

#include <optional>

class QLineEdit;

/// Asks for the number of a line. It is not checked against any document.
class frmJumpTo : public QDialog {
    Q_OBJECT
public:
    explicit frmJumpTo(QWidget *parent);

    qint64 lineNo = 0; ///< the number that was accepted

    /// A decimal integer with blanks around it, a sign, and digits of any script, as a Japanese keyboard
    /// types them in full width. Nothing for other texts, and for numbers beyond 64 bits.
    static std::optional<qint64> numberOf(const QString &text);

public slots:
    void accept() override;

private:
    QLineEdit *m_line;
};
