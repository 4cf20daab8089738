#include "orv_decoder/build_info.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>

namespace {

TEST(BuildInfo, recordNamesConfigurationVersionCommitAndDate)
{
    const std::regex form("orv_decoder_[A-Za-z]+-19\\.46\\.0-([0-9a-f]{7,}|unknown)-([0-9]{4}-[0-9]"
                          "{2}-[0-9]{2}|unknown)");
    EXPECT_TRUE(std::regex_match(orv::kBuildRecord, form)) << orv::kBuildRecord;
}

TEST(BuildInfo, recordHoldsTheCommitId)
{
    EXPECT_NE(std::string(orv::kBuildRecord).find(orv::kCommitId), std::string::npos);
}

} // namespace
