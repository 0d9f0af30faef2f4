#include "PartsList.h"

#include "foundation/KW_Text_Scanner.h"

namespace {

constexpr short kSkipSpacesAndComments = 3;

struct TypeName {
    const char* name;
    API_LibTypeID type;
};
constexpr TypeName kTypes[] = {
    {"object", APILib_Object}, {"door", APILib_Door}, {"window", APILib_Window}, {"lamp", APILib_Lamp}};

bool findType(const KW_String& name, API_LibTypeID& type) {
    for (const TypeName& each : kTypes) {
        if (name != KW_String(each.name, KW_String::Encoding_ASCII)) continue;
        type = each.type;
        return true;
    }
    return false;
}

}  // namespace

long readPartsList(const KW_String& text, KW_List<PartsEntry>& entries) {
    KW_Text_Scanner scanner;
    scanner.Set(text);
    for (long number = 1;; ++number) {
        if (scanner.SkipSpacesTabsEOLsComments(true) == scanner.length) return 0;
        PartsEntry entry{};
        if (!findType(scanner.ReadToken(kSkipSpacesAndComments, true), entry.type)) return number;
        if (!scanner.ReadLong(entry.pieces, kSkipSpacesAndComments, true)) return number;
        if (!scanner.ReadDoubleQuotedString(entry.name, kSkipSpacesAndComments, true)) return number;
        entries.AddData(entry, -1);
    }
}
