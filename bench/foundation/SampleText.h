#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Text to measure with: words of a language in an order that does not repeat, so that a processor cannot
/// learn it by heart as it does a sentence that comes again and again.
namespace sample {

inline std::string shuffled(const std::vector<std::string>& words, const std::string& between,
                            std::size_t bytes) {
    std::string text;
    std::uint32_t random = 1;
    for (std::size_t written = 0; text.size() < bytes; ++written) {
        random = random * 1664525 + 1013904223;
        text += words[(random >> 16) % words.size()];
        text += written % 12 == 11 ? "\n" : between;
    }
    return text;
}

inline std::string ascii(std::size_t bytes) {
    return bytes < 100
               ? "TessaroPlugins 22.04"
               : shuffled({"the",    "shared", "services", "of",      "a",     "suite", "strings,", "lists,",
                           "files",  "and",    "settings", "updates", "are",   "read",  "from",     "one",
                           "folder", "by",     "every",    "add-on",  "when",  "it",    "starts;",  "nothing",
                           "else",   "is",     "written",  "there",   "22.04", "OK"},
                          " ", bytes);
}

inline std::string italian(std::size_t bytes) {
    return bytes < 100 ? "Già così è più città"
                       : shuffled({"perché",      "la",       "città",         "è",        "così",
                                   "bella,",      "il",       "caffè",         "lì",       "più",
                                   "in",          "là",       "l'università",  "già",      "aperta",
                                   "e",           "di",       "una",           "finestra", "scala",
                                   "non",         "può",      "aggiornamento", "libreria", "oggetti",
                                   "disponibile", "versione", "lingua",        "verrà",    "scelta",
                                   "dal",         "menu",     "impostazioni",  "file",     "qualità",
                                   "progetto",    "pianta",   "sezione",       "attività", "però"},
                                  " ", bytes);
}

inline std::string japanese(std::size_t bytes) {
    return bytes < 100 ? "言語と設定"
                       : shuffled({"言語を",     "選択して",     "ください。", "アップデート", "自動的に",
                                   "確認します", "図面と",       "ライブラリ", "部品の",       "一覧",
                                   "OK",         "バージョン22", "設定",       "ファイル",     "保存",
                                   "開く",       "キャンセル",   "、",         "建具",         "平面図"},
                                  "", bytes);
}

}  // namespace sample
