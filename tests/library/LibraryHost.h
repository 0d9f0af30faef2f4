#pragma once

#include "files/KW_Location.h"
#include "language/KW_Language.h"
#include "platform/LibraryPart.h"
#include "tests/support/RecordingHost.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace support {

/// A host with libraries. Every location that it hands out is the caller's to release: the leak check at the
/// end of the program counts.
class LibraryHost : public testing::Test {
protected:
    struct Part {
        std::int32_t index;
        std::string path;
        bool missing = false;
    };

    LibraryHost() {
        gKW_Language = KW_Language_International;
        host.libPartSearch = [this](API_LibPart* part) {
            searched.push_back(GS::UniStringToUtf8(GS::UniString(part->name)));
            EXPECT_EQ(part->index, 0);
            EXPECT_FALSE(part->missingDef);
            EXPECT_EQ(part->location, nullptr);
            EXPECT_EQ(part->typeID, APILib_Door);
            const GSErrCode answer = parts.contains(searched.back()) ? searchAnswer : kAPIErrNoSuchPart;
            if (answer == kNoError) fill(*part, parts[searched.back()]);
            return answer;
        };
        host.libPartGet = [this](API_LibPart* part) {
            EXPECT_EQ(part->location, nullptr);
            EXPECT_EQ(part->name[0], 0);
            for (const auto& [name, each] : parts) {
                if (each.index != part->index) continue;
                fill(*part, each);
                return kNoError;
            }
            return kAPIErrNoSuchPart;
        };
        host.environment = [this](API_EnvironmentID request, void* par1, void* par2, void*) -> GSErrCode {
            if (request == APIEnv_GetLibrariesID) {
                EXPECT_EQ(*static_cast<std::int32_t*>(par2), -1) << "preset: no embedded library";
                if (librariesAnswer != kNoError) return librariesAnswer;
                for (const std::string& path : libraries)
                    static_cast<API_LibraryList*>(par1)->push_back({IO::Location::FromPosixPath(path)});
                *static_cast<std::int32_t*>(par2) = embedded;
                return kNoError;
            }
            if (request != APIEnv_AddLibraryID) return kAPIErrNoHostFunction;
            added.push_back(utf8(KW_Location(*static_cast<const IO::Location*>(par1))));
            if (addAnswer == kNoError) parts.merge(partsOfFolder[added.back()]);
            return addAnswer;
        };
    }

    static void fill(API_LibPart& record, const Part& part) {
        record.index = part.index;
        record.missingDef = part.missing;
        record.location = new IO::Location(IO::Location::FromPosixPath(part.path));
    }

    RecordingHost host;
    std::map<std::string, Part> parts;                                 ///< by name, of the loaded libraries
    std::map<std::string, std::map<std::string, Part>> partsOfFolder;  ///< what adding a folder brings
    std::vector<std::string> libraries;
    std::int32_t embedded = -1;
    GSErrCode searchAnswer = kNoError;
    GSErrCode librariesAnswer = kNoError;
    GSErrCode addAnswer = kNoError;

    std::vector<std::string> searched;
    std::vector<std::string> added;
};

}  // namespace support
