#include "FWebTables.h"

#include "FWeb.h"
#include "FontFaces.h"

std::span<const MenuRow> MenuRows() {
  static constexpr MenuRow rows[] = {
      {0, "mFile", "&File"},
      {1, "mOpenFile", "&Open HTML File", &FWeb::mOpenFile},
      {1, "mLineF2", "-"},
      {1, "mSavePageFil", "&Save Current Page as HTML File", &FWeb::mSavePageFil},
      {1, "mline2", "-"},
      {1, "mExit", "E&xit", &FWeb::mExit},
      {0, "mPage", "&Page"},
      {1, "mNewPage", "&New", &FWeb::mNewPage},
      {1, "mSavePage", "&Save Current", &FWeb::mSavePage},
      {1, "mDelPage", "&Delete Current", &FWeb::mDelPage},
      {0, "mProject", "P&roject"},
      {1, "mNewProject", "&New", &FWeb::mNewProject},
      {1, "mOpenProject", "&Open Saved Project", &FWeb::mOpenProject},
      {1, "mSaveProject", "&Save Current Project", &FWeb::SaveProject},
      {0, "mEdit", "&Edit"},
      {1, "mCut", "Cu&t", &FWeb::mCut},
      {1, "mCopy", "&Copy", &FWeb::mCopy},
      {1, "mPasteMain", "&Paste..."},
      {2, "mPaste0", "&Cut/Copied Text", nullptr, &FWeb::mPaste, 0},
      {2, "mPaste1", "Cut/Copied &Element", nullptr, &FWeb::mPaste, 1},
      {2, "mPaste2", "Text From Clip&Board", nullptr, &FWeb::mPaste, 2},
      {1, "mline11", "-"},
      {1, "mSelText", "&With Selected Text..."},
      {2, "mMakeTBlock", "Make &Text Block", &FWeb::mMakeTBlock},
      {2, "mApplyFont", "Apply &Current Size, Face, Color", &FWeb::mApplyFont},
      {1, "mAlignPic1", "Align &Image"},
      {2, "mAlign0", "&Left", nullptr, &FWeb::mAlign, 0},
      {2, "mAlign1", "&Right", nullptr, &FWeb::mAlign, 1},
      {2, "mAlign2", "&Center", nullptr, &FWeb::mAlign, 2},
      {1, "mTableProps1", "Ta&ble Properties", &FWeb::mTableProps},
      {0, "mView", "&View"},
      {1, "mViewSource", "Page &Source", &FWeb::mViewSource},
      {1, "mline5", "-"},
      {1, "mRefresh", "&Refresh", &FWeb::mRefresh},
      {0, "mTools", "&Tools"},
      {1, "mPicEditor", "Picture &Editor", &FWeb::mPicEditor},
      {1, "mOpenIcoEd", "&Icon Editor", &FWeb::mOpenIcoEd},
      {1, "mline6", "-"},
      {1, "mMakePack", "&Create Web-Pack File", &FWeb::mMakePack},
      {1, "mEmail", "E-&mail Current Page", &FWeb::mEmail},
      {1, "mline1", "-"},
      {1, "mSettings", "&Settings", &FWeb::mSettings},
      {0, "mThemesMain", "T&hemes"},
      {1, "mmtheme0", "Rainbow", nullptr, &FWeb::mmtheme, 0},
      {1, "mmtheme1", "Hearts", nullptr, &FWeb::mmtheme, 1},
      {1, "mmtheme2", "Metallic", nullptr, &FWeb::mmtheme, 2},
      {1, "mmtheme3", "Forest Green", nullptr, &FWeb::mmtheme, 3},
      {1, "mmtheme4", "Ruby", nullptr, &FWeb::mmtheme, 4},
      {1, "mmtheme5", "Deep Blue", nullptr, &FWeb::mmtheme, 5},
      {1, "mmtheme6", "Outer Space", nullptr, &FWeb::mmtheme, 6},
      {1, "mTheme2", "Stationery"},
      {2, "mmthemeS0", "Parchment", nullptr, &FWeb::mmthemeS, 0},
      {2, "mmthemeS1", "White Marble", nullptr, &FWeb::mmthemeS, 1},
      {2, "mmthemeS2", "Elegant - Linen", nullptr, &FWeb::mmthemeS, 2},
      {2, "mmthemeS3", "Elegant - Lilac", nullptr, &FWeb::mmthemeS, 3},
      {2, "mmthemeS4", "Elegant - Peach", nullptr, &FWeb::mmthemeS, 4},
      {2, "mmthemeS5", "Paper", nullptr, &FWeb::mmthemeS, 5},
      {2, "mmthemeS6", "Pink Pinstripe", nullptr, &FWeb::mmthemeS, 6},
      {0, "mQuikTip", "&Quick Tips"},
      {1, "mQuik0", "What can I do with Corvane?", nullptr, &FWeb::mQuik, 0},
      {1, "mQuik1", "What can I do with webpages?", nullptr, &FWeb::mQuik, 1},
      {1, "mQuik2", "How do I start?", nullptr, &FWeb::mQuik, 2},
      {1, "mQuik3", "What is the Work Window?", nullptr, &FWeb::mQuik, 3},
      {1, "mQuik4", "What are Themes?", nullptr, &FWeb::mQuik, 4},
      {1, "mQuik5", "How do I change the background?", nullptr, &FWeb::mQuik, 5},
      {1, "mQuik6", "How do I change text?", nullptr, &FWeb::mQuik, 6},
      {1, "mQuik7", "How do I add or remove pictures?", nullptr, &FWeb::mQuik, 7},
      {1, "mQuik8", "What is a table?", nullptr, &FWeb::mQuik, 8},
      {1, "mQuik9", "How do I control the page layout?", nullptr, &FWeb::mQuik, 9},
      {1, "mQuik10", "How do I email a page?", nullptr, &FWeb::mQuik, 10},
      {1, "mQuik11", "How do I make a package?", nullptr, &FWeb::mQuik, 11},
      {0, "mHelpGen", "&Help"},
      {1, "mCVNHelp", "&Corvane Help", &FWeb::mCVNHelp},
      {1, "mhline1", "-"},
      {1, "mAboutCVN", "&About Corvane", &FWeb::mAboutCVN},
      // The menus that pop up over the page; their heads don't show.
      {0, "mPop", "pop"},
      {1, "mCutPop", "Cu&t", &FWeb::mCut},
      {1, "mCopyPop", "&Copy", &FWeb::mCopy},
      {1, "mPasteP0", "&Paste Cut/Copied Text", nullptr, &FWeb::mPaste, 0},
      {1, "mPasteP1", "Paste Cut/Copied &Element", nullptr, &FWeb::mPaste, 1},
      {1, "mPasteP2", "Paste Text From Clip&Board", nullptr, &FWeb::mPaste, 2},
      {1, "mLine10", "-"},
      {1, "mSelTextP", "&With Selected Text..."},
      {2, "mMakeTBlockP", "Make &Text Block", &FWeb::mMakeTBlock},
      {2, "mApplyFontP", "Apply &Current Size, Face, Color", &FWeb::mApplyFont},
      {1, "mline6p", "-"},
      {1, "mAlignPic", "Align &Image"},
      {2, "mAlignP0", "&Left", nullptr, &FWeb::mAlign, 0},
      {2, "mAlignP1", "&Right", nullptr, &FWeb::mAlign, 1},
      {2, "mAlignP2", "&Center", nullptr, &FWeb::mAlign, 2},
      {1, "mTableProps", "Ta&ble Properties", &FWeb::mTableProps},
      {0, "mPop2", "pop2"},
      {1, "mPasteP20", "&Paste Cut/Copied Text", nullptr, &FWeb::mPaste, 0},
      {1, "mPasteP21", "Paste Cut/Copied  &Element", nullptr, &FWeb::mPaste, 1},
      {1, "mPasteP22", "Paste Text From Clip&Board", nullptr, &FWeb::mPaste, 2},
  };
  return rows;
}

std::span<const ToolRow> ToolRows() {
  static constexpr ToolRow rows[] = {
      {1, 60, 100, "new-project", "New project.", &FWeb::mNewProject},
      {2, 420, 100, "open-project", "Open saved project", &FWeb::mOpenProject},
      {0, 960, 105, "new-page", "New page.", &FWeb::mNewPage},
      {3, 1320, 100, "save-page", "Save current page", &FWeb::mSavePage},
      {4, 1680, 100, "delete-page", "Delete current page", &FWeb::mDelPage},
      {5, 2240, 100, "picture-editor", "Open Picture Editor", &FWeb::mPicEditor},
      {6, 2600, 100, "icon-editor", "Open Icon Editor", &FWeb::mOpenIcoEd},
      {7, 2960, 105, "email", "Send this page as email", &FWeb::mEmail},
      {8, 3320, 100, "web-pack", "Create web-pack file", &FWeb::mMakePack},
  };
  static_assert(std::size(rows) == kToolCount);
  return rows;
}

std::span<const FontRow> FontRows() {
  using enum FontRow::Kind;
  static constexpr FontRow rows[] = {
      {Label, "Label1_3", 120, 120, 915, 195, "Cur. page", nullptr},
      {List, "BoxPage", 180, 360, 795, 315,
       "1|2|3|4|5|6|7|8|9|10|11|12|13|14|15|16|17|18|19|20|21|22|23|24|25|26|27|28|29|30", "Current Page control."},
      {Label, "Label1_0", 1320, 120, 2055, 195, "Font", nullptr},
      {List, "BoxFace", 1320, 360, 2175, 330, kFontFaces, "Font face for selected text."},
      {Label, "Label1_2", 3600, 120, 735, 195, "Size", nullptr},
      {List, "BoxSize", 3660, 360, 615, 330, "1|2|3|4|5|6", "Font size for selected text."},
      {Label, "Label1_4", 4440, 120, 615, 195, "Color", nullptr},
      {Swatch, "BoxColor0", 4560, 360, 405, 315, "#000000", "Text color for selected text."},
      {Label, "Label1_1", 5160, 120, 735, 195, "Back col.", nullptr},
      {Swatch, "BoxColor1", 5280, 360, 405, 315, "#FFFFFF", "Background color for selected text."},
      {Button, "bBold", 6000, 360, 315, 315, "B", "Selected text - toggle bold."},
  };
  return rows;
}

std::span<const WorkRow> WorkRows() {
  static constexpr WorkRow rows[] = {
      {false, 6, "sel-cut", "Cut", "Cut selected text or element.", &FWeb::mCut},
      {false, 35, "sel-copy", "Copy", "Copy selected text or element", &FWeb::mCopy},
      {false, 66, "sel-paste", "Paste", "Paste text or element from cut/copy operation", &FWeb::ShowPaste2Menu},
      {false, 110, "sel-link", "make link", "Add link.", &FWeb::AddLink},
      {false, 166, "sel-picture", "add picture", "Add picture to page.", &FWeb::AddPicture},
      {false, 211, "sel-table", "table", "Add table (rectangular area) to page.", &FWeb::AddTable},
      {true, 306, "sel-forward", "Forward", "Move selected item forward.", nullptr, &FWeb::SwitchPlaces, 1},
      {true, 8, "sel-left", "Left", "Move selected element to left.", nullptr, &FWeb::MoveOneSpace, 0, true},
      {true, 46, "sel-up", "Up", "Move selected element up.", nullptr, &FWeb::MoveOneSpace, 1, true},
      {true, 84, "sel-right", "Right", "Move selected element to right.", nullptr, &FWeb::MoveOneSpace, 2, true},
      {true, 122, "sel-down", "Down", "Move selected element down.", nullptr, &FWeb::MoveOneSpace, 3, true},
      {true, 260, "sel-back", "Back", "Move selected item back.", nullptr, &FWeb::SwitchPlaces, -1, true},
  };
  return rows;
}
