#include "FWebTables.h"

#include "FWeb.h"

std::span<const MenuRow> MenuRows() {
  static constexpr MenuRow rows[] = {
      {0, "mFile", "&File", nullptr},
      {1, "mOpenFile", "&Open HTML File", &FWeb::mOpenFile},
      {1, "mLineF2", "-", nullptr},
      {1, "mSavePageFil", "&Save Current Page as HTML File", &FWeb::mSavePageFil},
      {1, "mline2", "-", nullptr},
      {1, "mExit", "E&xit", &FWeb::mExit},
      {0, "mPage", "&Page", nullptr},
      {1, "mNewPage", "&New", &FWeb::mNewPage},
      {1, "mSavePage", "&Save Current", &FWeb::mSavePage},
      {1, "mDelPage", "&Delete Current", &FWeb::mDelPage},
      {0, "mProject", "P&roject", nullptr},
      {1, "mNewProject", "&New", &FWeb::mNewProject},
      {1, "mOpenProject", "&Open Saved Project", &FWeb::mOpenProject},
      {1, "mSaveProject", "&Save Current Project", &FWeb::SaveProject},
      {0, "mView", "&View", nullptr},
      {1, "mRefresh", "&Refresh", &FWeb::mRefresh},
      {0, "mTools", "&Tools", nullptr},
      {1, "mMakePack", "&Create Web-Pack File", &FWeb::mMakePack},
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
      {List, "BoxFace", 1320, 360, 2175, 330,
       "Arial, Helvetica|Verdana, Arial, Helvetica|Times New Roman|Comic Sans MS|Courier New|Tahoma",
       "Font face for selected text."},
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
