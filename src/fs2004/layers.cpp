#include "fs2004/layers.h"

#include <string>
#include <unordered_map>

namespace quilmark {

namespace {

uint32_t Runway_Key(const Fs2004_Runway_Rec& r) {
    return static_cast<uint32_t>(r.primary_number) |
           static_cast<uint32_t>(r.secondary_number) << 8 |
           static_cast<uint32_t>(r.primary_designator & 0x0F) << 16 |
           static_cast<uint32_t>(r.secondary_designator & 0x0F) << 24;
}

uint64_t Com_Key(const Fs2004_Com_Rec& c) {
    return static_cast<uint64_t>(c.type) << 32 | c.hz;
}

// One airport while the layers are laid. Every runway and frequency remembers the
// ordinal of the record that added it, and every deletion the ordinal of the record that
// made it: an element is deleted when a deletion that names it (or all of its kind) comes
// from a later record. Applied once at the end, this keeps the laying linear however many
// records an ident has.
struct Merging {
    Fs2004_Airport_Rec airport;
    uint32_t records = 0; // ordinal of the last record laid, from 1
    std::vector<uint32_t> runway_ordinals;
    std::vector<uint32_t> com_ordinals;
    uint32_t all_runways_deleted = 0; // by the record of this ordinal; 0 none
    uint32_t all_coms_deleted = 0;
    std::unordered_map<uint32_t, uint32_t> runways_deleted; // key to the latest ordinal
    std::unordered_map<uint64_t, uint32_t> coms_deleted;
};

template <class T, class Key_Of, class Deleted>
void Drop_Deleted(std::vector<T>& items, const std::vector<uint32_t>& ordinals, uint32_t all,
                  const Deleted& deleted, Key_Of key_of) {
    size_t kept = 0;
    for (size_t i = 0; i < items.size(); ++i) {
        auto one = deleted.find(key_of(items[i]));
        if (ordinals[i] >= all && (one == deleted.end() || ordinals[i] >= one->second)) {
            // Never moved onto itself: a string moved onto itself may come out empty.
            if (kept != i) {
                items[kept] = std::move(items[i]);
            }
            ++kept;
        }
    }
    items.resize(kept);
}

void Lay(Merging& m, Fs2004_Airport_Rec&& record) {
    const uint32_t ordinal = ++m.records;
    Fs2004_Airport_Rec& a = m.airport;
    const Fs2004_Deletion_Rec& deletion = record.deletion;
    if ((deletion.flags & Delete_All_Runways) != 0) {
        m.all_runways_deleted = ordinal;
    }
    if ((deletion.flags & Delete_All_Frequencies) != 0) {
        m.all_coms_deleted = ordinal;
    }
    for (const Fs2004_Runway_Rec& r : deletion.runways) {
        m.runways_deleted[Runway_Key(r)] = ordinal;
    }
    for (const Fs2004_Com_Rec& c : deletion.frequencies) {
        m.coms_deleted[Com_Key(c)] = ordinal;
    }
    if ((deletion.flags & Delete_All_Taxiways) != 0) {
        a.taxi_points.clear();
        a.parkings.clear();
        a.taxi_paths.clear();
    }

    a.ident = std::move(record.ident);
    a.lat = record.lat;
    a.lon = record.lon;
    if (!record.name.empty()) {
        a.name = std::move(record.name);
    }
    for (Fs2004_Runway_Rec& r : record.runways) {
        a.runways.push_back(std::move(r));
        m.runway_ordinals.push_back(ordinal);
    }
    for (const Fs2004_Com_Rec& c : record.coms) {
        a.coms.push_back(c);
        m.com_ordinals.push_back(ordinal);
    }
    // The record's paths index its own points and spots, which now stand behind the
    // lower layers' ones.
    const auto points_below = static_cast<int32_t>(a.taxi_points.size());
    const auto spots_below = static_cast<int32_t>(a.parkings.size());
    for (Taxi_Path_Rec& path : record.taxi_paths) {
        path.start_point += points_below;
        path.end_point += path.path_kind == Path_Parking ? spots_below : points_below;
        a.taxi_paths.push_back(std::move(path));
    }
    a.taxi_points.insert(a.taxi_points.end(), record.taxi_points.begin(), record.taxi_points.end());
    a.parkings.insert(a.parkings.end(), std::make_move_iterator(record.parkings.begin()),
                      std::make_move_iterator(record.parkings.end()));
}

} // namespace

std::vector<Fs2004_Airport_Rec>
Layer_Fs2004_Airports(std::vector<std::vector<Fs2004_Airport_Rec>> layers) {
    std::vector<Merging> merging;
    std::unordered_map<std::string, size_t> by_ident;
    for (std::vector<Fs2004_Airport_Rec>& layer : layers) {
        for (Fs2004_Airport_Rec& record : layer) {
            auto [slot, fresh] = by_ident.emplace(record.ident, merging.size());
            if (fresh) {
                merging.emplace_back();
            }
            Lay(merging[slot->second], std::move(record));
        }
        layer = {};
    }
    std::vector<Fs2004_Airport_Rec> airports;
    airports.reserve(merging.size());
    for (Merging& m : merging) {
        Drop_Deleted(m.airport.runways, m.runway_ordinals, m.all_runways_deleted, m.runways_deleted,
                     Runway_Key);
        Drop_Deleted(m.airport.coms, m.com_ordinals, m.all_coms_deleted, m.coms_deleted, Com_Key);
        m.airport.deletion = {};
        airports.push_back(std::move(m.airport));
        m = {};
    }
    return airports;
}

} // namespace quilmark
