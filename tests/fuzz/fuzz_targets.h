#pragma once

#include <cstddef>
#include <cstdint>

#include <QString>

// What the fuzzers feed: each function reads one input the way the program reads that kind of data
// from outside. The fuzz programs call one each; the unit tests replay every kept finding through them.
namespace sky::fuzz {

void Whazzup(const std::uint8_t* data, std::size_t size);   // first byte: the network
void JsonFeeds(const std::uint8_t* data, std::size_t size); // both networks' JSON, then interpreted
void StatusFile(const std::uint8_t* data, std::size_t size);
void Gunzip(const std::uint8_t* data, std::size_t size);
void SettingsFiles(const std::uint8_t* data, std::size_t size); // skln.ini, a theme, friends, watches
void Companion(const std::uint8_t* data, std::size_t size);     // command lines against the demo feed
void Route(const std::uint8_t* data, std::size_t size);         // "DEP DEST route..."
void Search(const std::uint8_t* data, std::size_t size);
void Coming(const std::uint8_t* data, std::size_t size); // VATSIM's bookings, events, their kept copies
// A list of METARs and their categories, an ATIS's runways.
void Weather(const std::uint8_t* data, std::size_t size);

// The targets by name, as the fuzz programs and the reproducer folders are named.
using Target = void (*)(const std::uint8_t*, std::size_t);
Target TargetNamed(const QString& name);

} // namespace sky::fuzz
