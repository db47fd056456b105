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
    void write(Config &config, const QString &key) const;

private:
    std::array<QString, size> m_texts;
};
