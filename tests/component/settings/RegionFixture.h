#pragma once

#include "SettingsFixture.h"
#include "Text.h"

/// What the tests of the region have in common.
class RegionFixture : public SettingsFixture
{
    Q_OBJECT

protected:
    inline static const QString regionStore = "region"_s;
    inline static const QString setUs = "iw reg set US"_s;
    inline static const QString setSe = "iw reg set SE"_s;
    inline static const QString setDe = "iw reg set DE"_s;
    inline static const QString successLine = "The region has been set successfully."_s;
    inline static const QString failureLine = "Failed to set the region."_s;

    /// Makes `region` all that the region's store holds.
    static void storeRegion(const QByteArray &region)
    {
        setStore(regionStore, "[wifi]\nregion=" + region + '\n');
    }
};
