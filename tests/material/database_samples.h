// Small database texts for the reader tests and the helpers that read and check them.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "material/database.h"

namespace pvx::test {

// One concrete with every section, a section to a line here. The words on each line make it
// unique for With() and hold no numbers.
inline const std::string Base =
    "1 100 materials and format\nTest concrete\n2400 dead weight\n"
    "THERMAL\n2400 capacity\n2.3 conductivity\nMATURITY\n4000 activation\n293 reference\n"
    "CORE heat 100000 0.05 4\n"
    "HYGRAL\n0.5 ratio\n300 cement\n0.015 air\n1.05 limit\n1 temperature flag\n20 fixed temperature\n"
    "1 hydration flag\n0.8 default hydration\n0.00001 first diffusion\n0.8 second diffusion\n"
    "0.05 third diffusion\n0.25 consumption\n0 saturated flag\n0.000000001 permeability\n"
    "MECHANICAL\nCONS 0.00001 thermal dilatation\nCONS 0 autogenous\nCONS 0 hygral\nNO STATISTICS\n"
    "Linear Elastic\nMATU 2 modulus\n10 1000\n100 30000\nCONS 0.2 poisson\nCONS 3 tensile\n"
    "CONS 40 compressive\nISOT softening 0.3 0.03 0.2\nseparator\n";

// The text with the line `old` replaced by `replacement` (which may hold several lines, or none:
// the line then goes).
inline std::string With(const std::string& text, const std::string& old, const std::string& replacement) {
  const std::size_t at = ("\n" + text).find("\n" + old + "\n");
  EXPECT_NE(at, std::string::npos) << old;
  if (at == std::string::npos) return text;
  if (replacement.empty()) return text.substr(0, at) + text.substr(at + old.size() + 1);
  return text.substr(0, at) + replacement + text.substr(at + old.size());
}

// The text up to (without) the line that starts with `line`.
inline std::string Before(const std::string& text, const std::string& line) {
  return text.substr(0, text.find("\n" + line) + 1);
}

inline std::string Base_With(const std::string& old, const std::string& replacement) {
  return With(Base, old, replacement);
}

// The concrete with a Maxwell chain in place of the linear model, up to its options.
inline std::string Chain_Head() {
  return Before(Base_With("Linear Elastic", "Maxwell Chain"), "ISOT softening");
}

// The whole chain record in a database of `format`: options, three units, a row of coefficients
// per point of E and the EPFL softening.
inline std::string Chain_Text(int format = 100) {
  return With(Chain_Head(), "1 100 materials and format", "1 " + std::to_string(format)) +
         "Temperature 2700\nHumidity 0.3\nStress level 1 1.5\nTransient 0.00001 0.00005\n3 units\n1 10 100\n"
         "0.5 0.3 0.2\n0.4 0.3 0.3\nEPFL 1 0.3 5000 0.03 0.2 0.3 0.5\nseparator\n";
}

struct Read_Result {
  bool ok = false;
  Table<Material> materials;
  Table<std::int32_t> colours;
  Database_Report report;
};

inline Read_Result Read(const std::string& text, Database_Settings settings = {}) {
  Read_Result r;
  r.ok = Read_Database_Text(text, settings, r.materials, r.colours, r.report);
  return r;
}

inline Material Read_One(const std::string& text) {
  const Read_Result r = Read(text);
  EXPECT_TRUE(r.ok) << r.report.Message << " (line " << r.report.Line << ")";
  EXPECT_EQ(r.materials.count(), 1);
  return r.materials.count() == 1 ? r.materials[1] : Material{};
}

// The message of a faulty text, checking that it is a named format fault.
inline std::string Fault_Of(const std::string& text, Database_Settings settings = {}) {
  const Read_Result r = Read(text, settings);
  EXPECT_FALSE(r.ok);
  EXPECT_EQ(r.report.Fault, Database_Fault::Format) << r.report.Message;
  return r.report.Message;
}

// A condition on a material read, with its own text for the failure message.
struct Check {
  const char* what;
  std::function<bool(const Material&)> holds;
};
// `m` is the material and `s` its softening law.
// clang-format off
#define HOLDS(...) ::pvx::test::Check{#__VA_ARGS__, [](const ::pvx::Material& m) { \
    [[maybe_unused]] const ::pvx::Softening& s = m.Softening_Law; return static_cast<bool>(__VA_ARGS__); }}
// clang-format on

inline void Expect_All(const Material& m, std::initializer_list<Check> checks) {
  for (const Check& c : checks)
    EXPECT_TRUE(c.holds(m)) << c.what;
}

}  // namespace pvx::test
