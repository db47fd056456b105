#pragma once

#include <QString>

#include <array>

class Config;

/// The texts that were searched for, or replaced by, most recent first. Where there are fewer the rest is
/// empty; gaps and doubles that a file has are kept until they are pushed out.
class SearchHistory {
public:
    static constexpr std::size_t size = 20;

    /// Puts a text on top; it stands there once only, and the oldest makes room. Nothing for an empty text.
    void add(const QString &text);
    const std::array<QString, size> &texts() const { return m_texts; }

    /// `key` is that of an entry without its index, in the config's present group.
    void read(const Config &config, const QString &key);
    /// Before a write: takes over what other processes have added since this one last read or wrote.
    void takeOver(const Config &config, const QString &key);
    void write(Config &config, const QString &key) const;
    /// After the config was written to its file.
    void setWritten() { m_known = m_texts; }

private:
    using Texts = std::array<QString, size>;

    Texts m_texts;
    Texts m_known; ///< as the file was last read or written
};
