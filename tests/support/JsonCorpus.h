#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace corvane::testing {

struct CorpusDocument {
    std::string name; // "y_..." is valid JSON, "n_..." is not, "i_..." may be either
    std::string bytes;
};

/// The documents of the JSON parsing test suite, where it lies beside the checkout; else none.
inline std::vector<CorpusDocument> jsonCorpus()
{
    const std::filesystem::path folder = CORVANE_SOURCE_DIR "/../shared/corpora/json-parsing";
    std::vector<CorpusDocument> documents;
    std::error_code missing;
    for (const auto& entry : std::filesystem::directory_iterator(folder, missing)) {
        std::ifstream file(entry.path(), std::ios::binary);
        if (entry.path().extension() == ".json")
            documents.push_back({entry.path().filename(), {std::istreambuf_iterator<char>(file), {}}});
    }
    return documents;
}

} // namespace corvane::testing
