#include "preparation/RecordView.h"

#include <algorithm>

namespace preparation
{

using files::ErrorCode;
using files::fail;
using files::Result;

Result<void> checkType(const FileType &record, std::initializer_list<std::uint32_t> accepted,
                       const std::string &what)
{
    if (std::find(accepted.begin(), accepted.end(), record.type) == accepted.end()) {
        std::string expected;
        for (std::size_t i = 0; i < accepted.size(); ++i) {
            const char *joint = i == 0 ? "" : i + 1 == accepted.size() ? " or " : ", ";
            expected += joint + std::to_string(accepted.begin()[i]);
        }
        return fail(ErrorCode::BadValue, "Wrong file type " + std::to_string(record.type) +
                                             " for " + what + ", expected " + expected);
    }
    return {};
}

Result<std::span<const SegmentData>> checkedSegments(const FileData *record,
                                                     std::initializer_list<std::uint32_t> accepted,
                                                     const std::string &what)
{
    if (record == nullptr) {
        return fail(ErrorCode::BadValue, "There is no record for " + what);
    }
    if (auto type = checkType(*record, accepted, what); !type) {
        return tl::unexpected(type.error());
    }
    if (record->segmentCount > record->segments.size()) {
        return fail(ErrorCode::BadValue,
                    "The record of " + what + " counts " + std::to_string(record->segmentCount) +
                        " segments and holds " + std::to_string(record->segments.size()));
    }
    const auto segments = std::span(record->segments).first(record->segmentCount);
    const auto hollow =
        std::find_if(segments.begin(), segments.end(), [](const SegmentData &segment) {
            return segment.size != 0 && segment.data == nullptr;
        });
    if (hollow != segments.end()) {
        return fail(ErrorCode::BadValue, "Segment " +
                                             std::to_string(hollow - segments.begin() + 1) +
                                             " of " + what + " has no data");
    }
    return segments;
}

}  // namespace preparation
