#pragma once

#include "SettingsFixture.h"

/// What the tests of the region have in common.
class RegionFixture : public SettingsFixture
{
    Q_OBJECT

protected:
    inline static const QString regionStore = QStringLiteral("region");
    inline static const QString setUs = QStringLiteral("iw reg set US");
    inline static const QString setSe = QStringLiteral("iw reg set SE");
    inline static const QString setDe = QStringLiteral("iw reg set DE");
    inline static const QString successLine = QStringLiteral("The region has been set successfully.");
    inline static const QString failureLine = QStringLiteral("Failed to set the region.");

    /// Makes `region` all that the region's store holds.
    static void storeRegion(const QByteArray &region)
    {
        setStore(regionStore, "[wifi]\nregion=" + region + '\n');
    }
};
