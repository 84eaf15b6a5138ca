#pragma once

#include "base/Json.h"
#include "catalogue/Site.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

/// Fills a list of services straight from the JSON parser's events, without a tree in between. Each event answers
/// whether reading goes on; what does not fit the form of a catalogue document ends it. Documents that are read one
/// after another add to the same list.
class SiteReader {
public:
    std::vector<Site> takeSites() { return std::move(sites_); }

    /// Makes room for as many as a document will hold that is `times` as long as what has been read, if it goes on so.
    /// A list that grows by itself takes three times its size at its largest moment.
    void expect(double times)
    {
        sites_.reserve(static_cast<std::size_t>(static_cast<double>(sites_.size()) * times) + 1);
    }

    // NOLINTBEGIN(readability-identifier-naming): the parser's names of its events.
    bool start_array(std::size_t) { return depth_ == outside ? enter() : isIgnored() && enter(); }
    bool end_array() { return leave(); }

    bool start_object(std::size_t)
    {
        if (depth_ != inList)
            return isIgnored() && enter();
        sites_.emplace_back();
        fieldsSeen_ = 0;
        return enter();
    }

    bool end_object()
    {
        const bool isIncompleteEntry = depth_ == inEntry && fieldsSeen_ != allFields;
        return !isIncompleteEntry && leave();
    }

    bool key(const std::string& name)
    {
        if (depth_ == inEntry)
            field_ = fieldNamed(name);
        return true;
    }

    bool string(const std::string& text)
    {
        if (depth_ != inEntry || field_ == fields.size())
            return isIgnored();
        // Copied, not moved: the parser keeps its buffer, and the text takes no more room than it needs.
        sites_.back().*fields[field_].place = text;
        fieldsSeen_ |= 1U << field_;
        return true;
    }

    bool null() const { return isIgnored(); }
    bool boolean(bool) const { return isIgnored(); }
    bool number_integer(Json::number_integer_t) const { return isIgnored(); }
    bool number_unsigned(Json::number_unsigned_t) const { return isIgnored(); }
    bool number_float(Json::number_float_t, const std::string&) const { return isIgnored(); }
    bool binary(const Json::binary_t&) const { return isIgnored(); }
    bool parse_error(std::size_t, const std::string&, const Json::exception&) const { return false; }
    // NOLINTEND(readability-identifier-naming)

private:
    struct Field {
        std::string_view key;
        std::string Site::* place;
    };
    static constexpr std::array<Field, 3> fields{
        {{"service", &Site::service}, {"url", &Site::url}, {"description", &Site::description}}};
    static constexpr unsigned allFields = 0b111;

    // Values of `depth_` where the form is fixed; below, everything belongs to a key that is ignored.
    static constexpr std::size_t outside = 0, inList = 1, inEntry = 2;

    static std::size_t fieldNamed(std::string_view name)
    {
        std::size_t field = 0;
        while (field < fields.size() && fields[field].key != name)
            ++field;
        return field;
    }

    /// Whether the value that begins here belongs to a key that does not matter.
    bool isIgnored() const { return depth_ > inEntry || (depth_ == inEntry && field_ == fields.size()); }

    bool enter() { return ++depth_ <= deepestJson; }
    bool leave()
    {
        --depth_;
        return true;
    }

    std::vector<Site> sites_;
    std::size_t depth_ = outside;
    std::size_t field_ = 0; // of the key read last, as an index into `fields`; their number for every other key
    unsigned fieldsSeen_ = 0;
};

} // namespace corvane
