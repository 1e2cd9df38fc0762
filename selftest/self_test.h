#pragma once
// The program's own acceptance test: checks the library data, the identification rules,
// the backup round trip and the sample collection, and hands back a plain-text report.
// Every check runs even when an earlier one fails; temporary folders are removed when
// their section ends.

#include "identify/matcher.h"
#include "library/specimen_library.h"
#include "samples/sample_set.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quarrydex {

class SelfTest {
public:
    SelfTest(const SpecimenLibrary& library, std::optional<SampleSet> samples);

    // Runs every section and returns the report, its lines joined with line feeds.
    std::string runAll();

    int passed() const { return passed_; }
    int failed() const { return failed_; }
    const std::vector<std::string>& lines() const { return lines_; }

    void begin(const std::string& title);
    // `detail` is only worked out on failure; it begins with " — " where a check has one.
    void check(bool ok, const std::string& name, const std::function<std::string()>& detail = {});
    void info(const std::string& text);

    // The ids of the first n candidates.
    static std::vector<std::string> top(const IdentifyResult& result, std::size_t n);

private:
    void integritySection();
    void narrowingSection();
    void consistencySection();
    void backupSection();
    void samplesSection();

    IdentifyResult identify(const Answers& answers, std::optional<RGB> color = std::nullopt) const;
    double confidenceOf(const IdentifyResult& result, const std::string& id) const;

    int passed_ = 0;
    int failed_ = 0;
    std::vector<std::string> lines_;
    std::string section_;
    const SpecimenLibrary& library_;
    Matcher matcher_;
    std::optional<SampleSet> samples_;
};

} // namespace quarrydex
