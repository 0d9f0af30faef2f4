#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Text to measure with: words of a language in an order that does not repeat, so that a processor cannot
/// learn it by heart as it does a sentence that comes again and again.
namespace sample {

/// Words of a language and what stands between them.
struct Language {
    const char* name;
    std::vector<std::string> words;
    std::string between;
    std::string shortText;  ///< some 20 bytes of UTF-8
};

/// At least so many bytes of UTF-8 in whole words; another seed gives another order.
inline std::string words(const Language& language, std::size_t bytes, std::uint32_t seed = 1) {
    std::string text;
    std::uint32_t random = seed;
    for (std::size_t written = 0; text.size() < bytes; ++written) {
        random = random * 1664525 + 1013904223;
        text += language.words[(random >> 16) % language.words.size()];
        text += written % 12 == 11 ? "\n" : language.between;
    }
    return text;
}

inline const Language kAscii = {
    "ASCII",
    {"the",      "shared",  "services", "of",      "a",    "suite", "strings,", "lists,", "files", "and",
     "settings", "updates", "are",      "read",    "from", "one",   "folder",   "by",     "every", "add-on",
     "when",     "it",      "starts;",  "nothing", "else", "is",    "written",  "there",  "22.04", "OK"},
    " ",
    "TessaroPlugins 22.04"};

inline const Language kItalian = {"Italian",
                                  {"perché",      "la",       "città",         "è",        "così",
                                   "bella,",      "il",       "caffè",         "lì",       "più",
                                   "in",          "là",       "l'università",  "già",      "aperta",
                                   "e",           "di",       "una",           "finestra", "scala",
                                   "non",         "può",      "aggiornamento", "libreria", "oggetti",
                                   "disponibile", "versione", "lingua",        "verrà",    "scelta",
                                   "dal",         "menu",     "impostazioni",  "file",     "qualità",
                                   "progetto",    "pianta",   "sezione",       "attività", "però"},
                                  " ",
                                  "Già così è più città"};

inline const Language kJapanese = {
    "Japanese",
    {"言語を",     "選択して", "ください。", "アップデート", "自動的に",     "確認します", "図面と",
     "ライブラリ", "部品の",   "一覧",       "OK",           "バージョン22", "設定",       "ファイル",
     "保存",       "開く",     "キャンセル", "、",           "建具",         "平面図"},
    "",
    "言語と設定"};

}  // namespace sample
