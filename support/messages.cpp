#include "support/messages.hpp"

#include <algorithm>
#include <array>
#include <cmath>

#include "support/conversions.hpp"

namespace ldg {
namespace {

// Texts are kept exactly as they have always been shown, spelling slips included.
constexpr std::array kMessages = std::to_array<MessageEntry>({
    {0, "Not translated"},
    {800, "Active"},
    {1000, "Internal error"},
    {1001, "ID not in collection."},
    {1002, "The parent of an account, master account or sum in general ledger must be a sum."},
    {1003, "Account 1% 2% can't be deleted."},
    {1004, "Error occoured updating subaccounts 1%."},
    {1005, "Error occoured deleting account 1%."},
    {1009, "Invalid subaccount type. Only accounts allowed."},
    {1010, "You can only use the child relationship for new accounts related to the master account."},
    {1012, "Wrong account destination."},
    {1013, "Account or sum can't be moved to different class."},
    {1014, "Destination account must be a child of the same master account"},
    {1015, "Only the balance and the economic account can exists in the general ledger root."},
    {1016, "New account must have child relationship if related to general ledger root item."},
    {1017, "Destination account not found."},
    {1100, "Period insert affects a locked period. Operation denied!"},
    {1101, "Period beginn must precede period end of one day at least."},
    {1102, "The remaining period can not be removed!"},
    {1103, "Date out of opened business year!"},
    {1104, "Date based search: Period could not be found!"},
    {1105, "No period with ID=%1 could be found!"},
    {1106, "Could not get period index!"},
    {1120,
     "In order to insert a new entry you must give an beginn-date peceding an other entry one "
     "day at least."},
    {1121, "Date based search: tax history entry could not be found!"},
    {1122, "No entry with ID=%1 could be found!"},
    {1123, "Could not get entry index!"},
    {1124, "The remaining period can not be removed!"},
    {1125, "An account sum cannot be used as tax destination. Only accounts can be tax destination."},
    {1126, "Missing tax code!"},
    {1127, "Missing tax description!"},
    {1128, "Missing tax destination account!"},
    {1129, "Anohter tax uses already uses the code!"},
    {1130, "No tax with ID=1% could be found!"},
    {1131, "TaxCanChoose property set to true, but no tax set!"},
    {1140, "Date based search: forein currency history entry could not be found!"},
    {1141, "The remainig forein currency history entry can not be removed!"},
    {1142, "Another forein currency definition already uses the code or the rate code!"},
    {1143, "Missing forein currency code!"},
    {1144, "Missing forein currency rate code!"},
    {1145, "Missing forein currency rate description!"},
    {1146, "Wrong forein currency unit value!"},
    {1147, "Missing account for exchange lost!"},
    {1148, "Missing account for exchange gain!"},
    {1149, "FCCanChooseRate property set to true, but no forein currency set!"},
    {1150, "No Journal with ID=1% could be found!"},
    {1151, "Another journal with the same number or description already exists!"},
    {1152, "Missing journal number!"},
    {1153, "Journal is permanently locked. Unable to unlock!"},
    {1154, "Journal already locked!"},
    {1155, "Journal already unlocked!"},
    {1156, "Journal already permanenlty locked!"},
    {1157, "Period is permanently locked. Unable to unlock!"},
    {1158, "Period already unlocked!"},
    {1159, "Period already locked!"},
    {1160, "Period already permanently locked"},
    {1161, "Account can't return balance for dates outside the opened business year!"},
    {1162,
     "Optional parameter JournalToExclude does't contain a valid JournalID-List. A valid-List "
     "contains JournalsID to be exclude of the balance, separated with semicolons."},
    {1163, "Invalid value: movement's valuta is not a Date!"},
    {1164,
     "Can't update: a new BookEntry must be saved using the Append method of the BookEntries "
     "collection"},
    {1165, "Can't append: changes in an existing BookEntry must be saved using its Update method."},
    {1166, "Journal not found!"},
    {1167, "Invalid entry date!"},
    {1168, "Entry date not in opened business year!"},
    {1169, "Journal locked! Book entry cannot be written to the choosen journal!"},
    {1170, "Book entry is permanently locked. Illegal call of method Append or Update failed."},
    {1171, "Book entry unbalanced!"},
    {1172, "Account not set!"},
    {1173, "Valuta is not a valid date!"},
    {1174, "Amount has not the same sign as FCAmount!"},
    {1175, "No movements found!"},
    {1176, "Movement with given Key not found!"},
    {1177, "Journal cannot be locked permanently! Unlocked book entries found!"},
    {1178, "Period cannot be locked permanently! Unlocked book entries found!"},
    {1179, "Period cannot be locked permanently! The prevous period is not locked permanently!"},
    {1180, "Adjustement date out of business year!"},
    {1181, "No forein currency adjustement entry needed for given account and period. No entry generated."},
    {1182, "Kursgewinn"},
    {1183, "Kursverlust"},
    {1184, "Kurs"},
    {1185, "Value isn't a date!"},
    {1186, "No DefinitiveSet with ID=%1 could be found!"},
    {1187, "No book entries selected to be done definitive!"},
    {1188, "This property or method is not supported for sums of accounts or master accounts!"},
    {1189, "This property is read only for sums of accounts or master accounts"},
    {1190, "This property does not apply for sums of accounts or master accounts"},
    {1191, "Beginn date for new business year is not a valide date!"},
    {1192, "End date for new business year is not a valide date!"},
    {1193, "Beginn date must preced end date in order to define a valid business year!"},
    {1194, "Bilanz"},
    {1195, "Erfolgsrechnung"},
    {1196, "Given business year overlaps with other business years in this database!"},
    {1197, "The given date for the end of next business year precedes the actual business year end"},
    {1198,
     "Datenbankdatei des vorherigen Geschäftsjahres nicht gefunden, Abschlussoperation "
     "abgebrochen! /n/n Sie können die Datenbankdatei des vorherigen Geschäftsjahres wieder "
     "auffindig machen. Wählen Sie dazu den Menübefehl 'Finanzbuchhaltung/Geschäftjahr' und "
     "wählen Sie den vorherigen Geschäftjahr. Das Programm wird Sie aufforden, die "
     "Datenbankdatei einzugeben."},
    {1199, "Previous business year must be archived before you can cloture the actual one. "},
    {1200, "Abschluss "},
    {1201, "Velmora Finance module registration not found! "},
    {1202,
     "You must archive previous business year in order to be able to do the same with the "
     "current one!"},
    {1203, "Can not forward balances. This busines year has not the cloture status."},
    {1204, "No book entry found with given ID!"},
    {1205, "No book entry found with given DocumentID!"},
    {1206, "Book entry is definitive and can not be deleted!"},
    {1207, "Can't delete! New book entry"},
    {1208, "Aktiv"},
    {1209, "Abschluss"},
    {1210, "Archiv"},
    {1211, "Entfernt"},
    {1212,
     "At least one journal can not be locked permanently! Do all book entries definitive in "
     "all journals and retry."},
    {1213, "Journal"},
    {1214, "Optional parameter BsnYearID is invalid"},
    {1215, "No AccountGroup with ID=%1 could be found!"},
    {1216, "Another account's group definition already uses the systemcode!"},
    {1217, "System dependent account group not found"},
    {1218, "First date parameter must be greater or equal sencond date parameter"},
    {1219, "The book entry is definitive. The definitive state of a book entry cannot be undone."},
    {1220, "Cannot book on account sums"},
    {1221, "Cannot book on master account"},
    {1222, "Result destination account unknown"},
    {1223, "Datenintegritätsproblem aufgetreten!"},
    {1224, "Storno, siehe Beleg "},
    {1225, "Tax cannot be removed!"},
    {1226, "Forein currency cannot be removed!"},
    {1227, "Period locked. The book entry cannot be saved in this period!"},
    {1228, "No Master Account found with given key!"},
    {1229, "Account used twice!"},
    {1230, "This account cannot be marked for deletion on clotue because the balance is not equal 0"},
    {1231, "This account cannot be marked for deletion because at least one subaccount has a balance <> 0"},
    {1232, "Account cannot be demarked for deletion because the parent will be deleted on cloture"},
    {1233, "Business Year archived: cannot change balance"},
    {1234, "Account marked for deletion on cloture: cannot change balance"},
    {1235, "Dependencies found on given account: cannot mark for deletion on cloture."},
    {1236, "Cannot delete account when balance not equal 0."},
    {1237, "Cannot change account code."},
});

static_assert(kMessages.size() == 133);
// The lookup searches by halves.
static_assert(std::is_sorted(kMessages.begin(), kMessages.end(),
                             [](const MessageEntry& a, const MessageEntry& b) { return a.id < b.id; }));

constexpr std::string_view kFirstPlaceholder = "1%";
constexpr std::string_view kSecondPlaceholder = "2%";

const MessageEntry* FindMessage(int32_t id) {
  auto found = std::lower_bound(kMessages.begin(), kMessages.end(), id,
                                [](const MessageEntry& entry, int32_t key) { return entry.id < key; });
  if (found == kMessages.end() || found->id != id) return nullptr;
  return &*found;
}

// The value as it joins a text: Null joins as nothing, so filling never fails on it.
std::string TextOfValue(const Variant& value) { return value.IsNull() ? std::string() : CStr(value); }

std::string FillPlaceholder(std::string_view text, std::string_view placeholder, std::string_view value) {
  size_t at = text.find(placeholder);
  std::string filled(text);
  if (at != std::string_view::npos) filled.replace(at, placeholder.size(), value);
  return filled;
}

}  // namespace

std::span<const MessageEntry> MessageTable() { return kMessages; }

Variant Message(const Variant& id) {
  if (!id.IsNumber()) return Variant();
  double number = CDbl(id);
  if (number != std::trunc(number) || std::abs(number) > INT32_MAX) return Variant();
  const MessageEntry* entry = FindMessage(static_cast<int32_t>(number));
  if (entry == nullptr) return Variant();
  return Variant(entry->text);
}

std::string MessageText(int32_t id) {
  const MessageEntry* entry = FindMessage(id);
  return entry == nullptr ? std::string() : std::string(entry->text);
}

std::string Fill1(std::string_view text, const Variant& value) {
  return FillPlaceholder(text, kFirstPlaceholder, TextOfValue(value));
}

std::string Fill2(std::string_view text, const Variant& value1, const Variant& value2) {
  return FillPlaceholder(Fill1(text, value1), kSecondPlaceholder, TextOfValue(value2));
}

Error MessageError(int32_t id) { return Error(MessageNumber(id), kAppTitle, MessageText(id)); }

Error MessageError(int32_t id, const Variant& value) {
  return Error(MessageNumber(id), kAppTitle, Fill1(MessageText(id), value));
}

Error MessageError(int32_t id, const Variant& value1, const Variant& value2) {
  return Error(MessageNumber(id), kAppTitle, Fill2(MessageText(id), value1, value2));
}

void RaiseMessage(int32_t id) { throw MessageError(id); }

void RaiseMessage(int32_t id, const Variant& value) { throw MessageError(id, value); }

void RaiseMessage(int32_t id, const Variant& value1, const Variant& value2) {
  throw MessageError(id, value1, value2);
}

void RaiseError(int32_t number, std::string_view description, std::string_view source) {
  throw Error(number, std::string(source), std::string(description));
}

void RaiseError(const Variant& number, std::string_view description, std::string_view source) {
  RaiseError(CLng(number), description, source);
}

}  // namespace ldg
