#pragma once

#include "translator/SDREntry.hpp"

#include <cstdint>
#include <unordered_map>
#include <vector>

/// Sensor data records by the index that links them to event records.
class SDRRepository {
public:
    SDRRepository() = default;
    /// Takes `count` records, each of which must have 64 readable bytes (SDREntry::keptLength), or whole records of any
    /// length. Left out are those that cannot be indexed and those that describe no sensor (locators and the like,
    /// whose bytes at the sensor's place mean something else).
    SDRRepository(const unsigned char* const* records, int count);
    explicit SDRRepository(const std::vector<std::vector<std::uint8_t>>& records);

    /// A record with this index that is there already is replaced.
    void add(int index, const SDREntry& record) { records.insert_or_assign(index, record); }
    /// SDRRepositoryError if there is none.
    void remove(int index);
    /// A copy of the record; SDRRepositoryError if there is none.
    SDREntry find(int index) const;
    /// The same without the error: null if there is none.
    const SDREntry* look(int index) const;
    void clear() { records.clear(); }
    std::size_t size() const { return records.size(); }

private:
    void addSensor(const SDREntry& record);

    std::unordered_map<int, SDREntry> records;
};
