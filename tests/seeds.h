#pragma once

#include <QTest>

/// The seed of a random test: SEED of the environment if set.
inline quint32 seedOr(quint32 usual)
{
    bool given = false;
    const quint32 wanted = qEnvironmentVariable("SEED").toUInt(&given);
    return given ? wanted : usual;
}

/// Rows of seeds, from SEED of the environment or 1 on, in a column "seed".
inline void addSeeds(quint32 count)
{
    QTest::addColumn<quint32>("seed");
    const quint32 first = seedOr(1);
    for (quint32 seed = first; seed < first + count; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}
