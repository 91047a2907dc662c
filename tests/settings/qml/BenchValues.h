#pragma once

#include "search/Entry.h"
#include "settings/host/Event.h"
#include "settings/host/Snapshot.h"

#include <QString>
#include <QVariant>

#include <cstddef>
#include <string>
#include <vector>

/// What tests write in QML, as snapshots and indexes have it; and events, as tests read them. See Bench.
namespace bench_values {

[[nodiscard]] platform::Value toValue(const QVariant& value);
[[nodiscard]] std::string toText(const QVariant& text);
[[nodiscard]] std::vector<std::string> toTexts(const QVariant& list);
[[nodiscard]] platform::UIColorRef toColor(const QVariant& name);
/// A picture of one colour; null for none.
[[nodiscard]] platform::UIImageRef toIcon(const QVariant& color);
[[nodiscard]] platform::CGRect toFrame(const QVariant& frame);
[[nodiscard]] settings::RowSnapshot toRow(const QVariantMap& map);
[[nodiscard]] settings::ElementSnapshot toElement(const QVariantMap& map);
[[nodiscard]] search::Page toPage(const QVariantMap& map, std::size_t position);
[[nodiscard]] search::Entry toEntry(const QVariantMap& map);

[[nodiscard]] QVariant written(const settings::Event& event);

} // namespace bench_values
