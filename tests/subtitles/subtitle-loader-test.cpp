// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/subtitle-loader.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using subtitles::SubtitleLoader;
using subtitles::SubtitleReference;
using testing::ElementsAre;

namespace {

/// The types that a loader takes, of all that there are.
std::string typesOf(SubtitleLoader& loader) {
    std::string types;
    for (const char* type : {"application/x-srt", "application/x-micro-dvd-sub",
                             "application/x-ass", "application/x-ssa", "application/x-smi",
                             "application/x-attributed-text", "text/plain", ""}) {
        SubtitleReference reference;
        reference.type = SubtitleReference::FILE;
        reference.mimeType = type;
        types += loader.canHandle(reference) ? std::string(type) + ";" : "";
    }
    return types;
}

std::vector<std::string> typesOf(const std::list<SubtitleLoader*>& loaders) {
    std::vector<std::string> types;
    std::transform(loaders.begin(), loaders.end(), std::back_inserter(types),
                   [](SubtitleLoader* loader) { return typesOf(*loader); });
    return types;
}

const auto inTheirOrder = ElementsAre("application/x-srt;", "application/x-micro-dvd-sub;",
                                      "application/x-ass;", "application/x-smi;");

}  // namespace

TEST(SubtitleLoader, HasOneLoaderForEachFormatInTheirOrder) {
    EXPECT_THAT(typesOf(SubtitleLoader::getAllLoaders()), inTheirOrder);
}

TEST(SubtitleLoader, GivesTheSameLoadersAtEachCall) {
    std::list<SubtitleLoader*> first = SubtitleLoader::getAllLoaders();
    const std::list<SubtitleLoader*> second = SubtitleLoader::getAllLoaders();
    EXPECT_EQ(first, second);
    first.clear();
    EXPECT_EQ(SubtitleLoader::getAllLoaders(), second) << "the list is the caller's own copy";
}

TEST(SubtitleLoader, MakesNewLoadersForTheCaller) {
    const std::list<SubtitleLoader*> ofTheLibrary = SubtitleLoader::getAllLoaders();
    const std::list<SubtitleLoader*> created = SubtitleLoader::createDefaultLoaders();
    EXPECT_THAT(typesOf(created), inTheirOrder);
    for (SubtitleLoader* const loader : created) {
        EXPECT_EQ(std::count(ofTheLibrary.begin(), ofTheLibrary.end(), loader), 0);
        const std::unique_ptr<SubtitleLoader> owned(loader);
    }
}

TEST(SubtitleLoader, HandlesNothingButFiles) {
    for (SubtitleLoader* const loader : SubtitleLoader::getAllLoaders()) {
        for (const int type : {-1, 1, 2}) {
            SubtitleReference reference;
            reference.type = static_cast<SubtitleReference::Type>(type);
            reference.mimeType = typesOf(*loader);
            reference.mimeType.pop_back();
            reference.path = "/films/movie.srt";
            EXPECT_FALSE(loader->canHandle(reference)) << reference.mimeType << ' ' << type;
        }
    }
}

TEST(SubtitleLoader, IsAnInterfaceWithoutState) {
    EXPECT_TRUE(std::is_abstract_v<SubtitleLoader>);
    EXPECT_TRUE(std::has_virtual_destructor_v<SubtitleLoader>);
    EXPECT_EQ(sizeof(SubtitleLoader), sizeof(void*));
}
