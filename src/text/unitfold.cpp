#include "text/unitfold.h"

#include <memory>

namespace {

/// The folding of all units in 128 KiB, made when the first search without case asks for it.
class FoldTable {
public:
    FoldTable()
        : m_units(std::make_unique<char16_t[]>(0x10000))
    {
        for (char32_t unit = 0; unit < 0x10000; ++unit)
            m_units[unit] = char16_t(QChar::toCaseFolded(unit));
    }
    char16_t operator[](char16_t unit) const { return m_units[unit]; }

private:
    std::unique_ptr<char16_t[]> m_units;
};

} // namespace

char16_t foldedUnit(char16_t unit)
{
    static const FoldTable table;
    return table[unit];
}
