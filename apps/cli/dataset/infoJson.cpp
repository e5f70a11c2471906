#include "apps/cli/dataset/DatasetInfo.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace megset::cli {

namespace {

using Json = nlohmann::ordered_json;

template <class Value>
Json orNull(const std::optional<Value>& value)
{
    return value ? Json(*value) : Json(nullptr);
}

Json toJson(const TrialInfo& trial)
{
    return {{"index", trial.index},       {"name", trial.name},         {"file", trial.file},
            {"found", trial.found},       {"virtual", trial.isVirtual}, {"good", trial.good},
            {"channels", trial.channels}, {"samples", trial.samples},   {"bytes", trial.bytes}};
}

Json toJson(const ChannelInfo& channel)
{
    const auto& position = channel.position;
    return {{"index", channel.index},
            {"name", channel.name},
            {"raw_name", channel.rawName},
            {"type", channel.type},
            {"type_name", channel.typeName},
            {"kind", channel.kind},
            {"geometry", channel.geometry},
            {"unit", channel.unit},
            {"good", channel.good},
            {"show", channel.shown},
            {"position_mm", position ? Json::array({position->x, position->y, position->z}) : Json(nullptr)},
            {"gradient_order", orNull(channel.gradientOrder)}};
}

Json toJson(const MarkInfo& mark)
{
    return {{"list", mark.list}, {"name", mark.name}, {"value", mark.value}, {"count", mark.count}};
}

template <class Item>
Json listOf(const std::vector<Item>& items)
{
    Json list = Json::array();
    for (const Item& item : items)
        list.push_back(toJson(item));
    return list;
}

std::uint64_t trialBytes(const DatasetInfo& info)
{
    std::uint64_t bytes = 0;
    for (const TrialInfo& trial : info.trials)
        bytes += trial.bytes;
    return bytes;
}

} // namespace

void writeJson(const DatasetInfo& info, std::ostream& out)
{
    const Json json = {
        {"file", info.file},
        {"session", info.session},
        {"current_trial", info.currentTrial},
        {"rate_hz", info.rate},
        {"samples", info.samples},
        {"pre_trigger_samples", info.preTrigger},
        {"resampling_factor", info.resamplingFactor},
        {"recorded",
         {{"rate_hz", info.rawRate}, {"samples", info.rawSamples}, {"pre_trigger_samples", info.rawPreTrigger}}},
        {"averages", info.averages},
        {"frame", info.frame},
        {"filter_hz", {info.filterLow, info.filterHigh}},
        {"trials", listOf(info.trials)},
        {"channels", listOf(info.channels)},
        {"marks", listOf(info.marks)},
        {"processing", info.processing},
        {"bytes", {{"dataset", info.bytes}, {"trials", trialBytes(info)}}}};
    // What is no valid UTF-8 in a file's name must not end the program.
    out << json.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

} // namespace megset::cli
