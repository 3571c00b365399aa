#pragma once

#include "support/CorpusComparison.h"

#include <filesystem>
#include <string>

// Compares, field by field, the values of imported bundles with an independent reader's view of the
// same plans (the corpus's `ref` folder); each field is held to agreeing on 99% of its values.
class BundleReferenceAgreement {
public:
    explicit BundleReferenceAgreement(testsupport::CorpusComparison& comparison);

    // Compares the bundle of one plan with the reference of that plan; nothing when there is none.
    void compare(const std::string& planFile, const std::filesystem::path& bundle);

private:
    testsupport::CorpusComparison& m_comparison;
};
