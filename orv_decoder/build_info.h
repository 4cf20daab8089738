#pragma once

namespace orv {

/// "orv_decoder_" configuration "-" version "-" commit id "-" date, for example
/// "orv_decoder_Release-19.46.0-f8d4f2b-2019-11-19".
extern const char* const kBuildRecord;

/// The commit that the library was built from, as in the build record.
extern const char* const kCommitId;

} // namespace orv
