#pragma once

#include <QLatin1StringView>
#include <QString>

#include "SettingsStore.h"

// The address and the default of everything that the program keeps between two runs.
namespace Settings {

inline constexpr QLatin1StringView AppKey{"QKCVN2"};
inline constexpr QLatin1StringView Section{"settings"};
// Its keys are "0" to "15", each a colour as a signed decimal number, "0" when missing.
inline constexpr QLatin1StringView CustColorsSection{"settings\\CustColors"};

// A key of section "settings".
struct Key {
  QLatin1StringView name;
  QLatin1StringView defaultText;
};

// Look of a new page: "#RRGGBB", a font list, "1" to "6", and the place in the lists of fonts.
inline constexpr Key BCol{QLatin1StringView("BCol"), QLatin1StringView("#000000")};
inline constexpr Key BFace{QLatin1StringView("BFace"), QLatin1StringView("Arial, Helvetica")};
inline constexpr Key BSz{QLatin1StringView("BSz"), QLatin1StringView("3")};
inline constexpr Key BFaceDex{QLatin1StringView("BFaceDex"), QLatin1StringView("0")};
// Main window: "0" normal or "2" maximised, width and height in twips.
inline constexpr Key Winset{QLatin1StringView("Winset"), QLatin1StringView("2")};
inline constexpr Key W1{QLatin1StringView("W1"), QLatin1StringView("9600")};
inline constexpr Key H1{QLatin1StringView("H1"), QLatin1StringView("7000")};
// "yes" or "no".
inline constexpr Key Compat4{QLatin1StringView("Compat4"), QLatin1StringView("no")};
// Web-packs: folder, text of the link, last file name, icon with its place in the options, custom icon's file name.
inline constexpr Key CardFol{QLatin1StringView("CardFol"), QLatin1StringView("")};
inline constexpr Key LinkText{QLatin1StringView("LinkText"), QLatin1StringView("Next Page")};
inline constexpr Key GreetName{QLatin1StringView("GreetName"), QLatin1StringView("Greeting.exe")};
inline constexpr Key CurIcon{QLatin1StringView("CurIcon"), QLatin1StringView("WP")};
inline constexpr Key CurIconNum{QLatin1StringView("CurIconNum"), QLatin1StringView("0")};
inline constexpr Key CustomIcon{QLatin1StringView("CustomIcon"), QLatin1StringView("")};
// Email: sender, server and account; the two lists hold their items with "*" between them.
inline constexpr Key DefEmail{QLatin1StringView("DefEmail"), QLatin1StringView("")};
inline constexpr Key DefName{QLatin1StringView("DefName"), QLatin1StringView("")};
inline constexpr Key DefServ{QLatin1StringView("DefServ"), QLatin1StringView("")};
inline constexpr Key DefUser{QLatin1StringView("DefUser"), QLatin1StringView("")};
inline constexpr Key DefPass{QLatin1StringView("DefPass"), QLatin1StringView("")};
inline constexpr Key To10{QLatin1StringView("To10"), QLatin1StringView("")};
inline constexpr Key From10{QLatin1StringView("From10"), QLatin1StringView("")};

inline QString Get(const SettingsStore& store, const Key& key) {
  return store.GetSetting(AppKey, Section, key.name, key.defaultText);
}

// For a value without which no page can be made: a stored "" is what a run without a page left behind.
inline QString GetWhole(const SettingsStore& store, const Key& key) {
  const QString text = Get(store, key);
  return text.isEmpty() ? QString(key.defaultText) : text;
}

inline void Save(SettingsStore& store, const Key& key, const QString& value) {
  store.SaveSetting(AppKey, Section, key.name, value);
}

}  // namespace Settings
