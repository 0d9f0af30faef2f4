// Settings of 2,000 keys in 98 kB: reading the file into memory and writing it durably, against a JSON file
// of the same pairs (nlohmann-json) and QSettings' INI files.

#include "platform/FileSystem.h"
#include "platform/host/SettingsFolder.h"
#include "platform/HostInterface.h"
#include "settings/AddonIdentity.h"
#include "settings/KW_AddonSettings.h"

#include <benchmark/benchmark.h>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <QSettings>
#include <QString>
#include <string>
#include <utility>
#include <vector>

char sett_ADDON_NAME[] = "SettingsBench";
char sett_ADDON_SETTINGS_FILE_NAME[] = "SettingsBench";
bool sett_ADDON_HAS_OWN_LANGUAGE = true;
char sett_ADDON_SHOWED_LANGUAGES[] = "";
char sett_ADDON_SUPP_EXTRA_LANGUAGES[] = "";
bool sett_ADDON_ONLY_PLUS_VERSION = false;

namespace {

// The files that are loaded are not those that are saved: runs of all may be mixed.
constexpr auto kLoaded = KW_AddonSettings_ThisAddon;
constexpr auto kSaved = KW_AddonSettings_AllAddons;
constexpr int kKeys = 2000;
/// QSettings keeps what it read of some 30 files; with more in turn each load reads its file.
constexpr int kIniFiles = 64;
constexpr int kSavedIniFile = kIniFiles;

using Pairs = std::vector<std::pair<std::string, std::string>>;

Pairs pairs() {
    Pairs result;
    for (int i = 0; i < kKeys; ++i) {
        result.emplace_back("Setting_number_" + std::to_string(10000 + i),
                            "a value of twenty-odd " + std::to_string(i));
    }
    return result;
}

/// A folder with all files, removed at the end.
class Files {
public:
    Files() : folder_(std::filesystem::temp_directory_path() / "tessaro-settings-bench") {
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directories(folder_);
        platform::setSettingsFolder(IO::Location::FromPosixPath(folder_.string()));
        nlohmann::json json;
        QSettings ini(iniPath(0), QSettings::IniFormat);
        for (const auto& [key, value] : pairs()) {
            for (const KW_AddonSettings_Type set : {kLoaded, kSaved}) {
                KW_AddonSettings_Set(set, KW_String(key.c_str(), KW_String::Encoding_System),
                                     KW_String(value.c_str(), KW_String::Encoding_System), true);
            }
            json[key] = value;
            ini.setValue(QString::fromStdString(key), QString::fromStdString(value));
        }
        KW_AddonSettings_Save(kLoaded);
        std::ofstream(jsonPath()) << json.dump();
        ini.sync();
        for (int i = 1; i <= kSavedIniFile; ++i) {
            std::filesystem::copy_file(iniPath(0).toStdString(), iniPath(i).toStdString());
        }
    }
    ~Files() { std::filesystem::remove_all(folder_); }
    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;

    QString iniPath(int number) const {
        return QString::fromStdString((folder_ / (std::to_string(number) + ".ini")).string());
    }
    std::string jsonPath() const { return (folder_ / "settings.json").string(); }

private:
    std::filesystem::path folder_;
};

const Files& files() {
    static const Files made;
    return made;
}

/// Each of the loads has read every key and every value once.
void check(benchmark::State& state, unsigned long characters) {
    static const unsigned long expected = [] {
        unsigned long sum = 0;
        for (const auto& [key, value] : pairs())
            sum += key.size() + value.size();
        return sum;
    }();
    if (characters != expected) state.SkipWithError("the load failed");
}

void loadOurs(benchmark::State& state) {
    files();
    KW_String key;
    KW_String value;
    for (auto _ : state) {
        if (!KW_AddonSettings_Load(kLoaded, false)) state.SkipWithError("the load failed");
        unsigned long units = 0;
        for (long i = 0; KW_AddonSettings_Get(kLoaded, i, &key, &value); ++i)
            units += key.length + value.length;
        check(state, units);
    }
}

void loadJson(benchmark::State& state) {
    const std::string path = files().jsonPath();
    for (auto _ : state) {
        std::ifstream file(path, std::ios::binary);
        const nlohmann::json json = nlohmann::json::parse(file);
        unsigned long bytes = 0;
        for (const auto& [key, value] : json.items()) {
            bytes += key.size() + value.get_ref<const std::string&>().size();
        }
        check(state, bytes);
    }
}

void loadIni(benchmark::State& state) {
    int number = 0;
    for (auto _ : state) {
        const QSettings settings(files().iniPath(number++ % kIniFiles), QSettings::IniFormat);
        unsigned long units = 0;
        for (const QString& key : settings.allKeys()) {
            units += static_cast<unsigned long>(key.size() + settings.value(key).toString().size());
        }
        check(state, units);
    }
}

void saveOurs(benchmark::State& state) {
    files();
    long round = 0;
    const KW_String key(pairs().front().first.c_str(), KW_String::Encoding_System);
    for (auto _ : state) {
        KW_AddonSettings_SetLong(kSaved, key, ++round, true);
        if (!KW_AddonSettings_Save(kSaved)) state.SkipWithError("the save failed");
    }
}

void saveIni(benchmark::State& state) {
    QSettings settings(files().iniPath(kSavedIniFile), QSettings::IniFormat);
    const QString key = QString::fromStdString(pairs().front().first);
    int round = 0;
    for (auto _ : state) {
        settings.setValue(key, ++round);
        settings.sync();
        if (settings.status() != QSettings::NoError) state.SkipWithError("the save failed");
    }
}

BENCHMARK(loadOurs)->Name("Load 2000 settings/ours");
BENCHMARK(loadJson)->Name("Load 2000 settings/nlohmann-json");
BENCHMARK(loadIni)->Name("Load 2000 settings/QSettings");
BENCHMARK(saveOurs)->Name("Save 2000 settings durably/ours")->UseRealTime();
BENCHMARK(saveIni)->Name("Save 2000 settings durably/QSettings")->UseRealTime();

}  // namespace

GSErrCode ACAPI_GetOwnLocation(IO::Location&) {
    return kAPIErrNoOwnLocation;
}
