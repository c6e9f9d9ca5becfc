#include "simulator/panel/panel_texts.h"

namespace simulator {
namespace {

// Assumed (Live.AnEnglishPanelNamesItsControlsInEnglish, Live.AnEnglishPanelHeadsItsListsInEnglish,
// Live.AnEnglishGoToSheetAsksInEnglish): what is not in anybody's printout of a panel: the panel's
// description, New Folder, the pop-up's title, the lists' headers, the text of the go-to sheet.
// Assumed (no test can tell: current systems do not show them): `go` and `message`, also below.
const PanelTexts english{
    .open = "Open",
    .description = "open",
    .choose = "Choose",
    .cancel = "Cancel",
    .sidebar = "sidebar",
    .listView = "list view",
    .viewOptions = "View Options",
    .groupBy = "Group or Sort By",
    .where = "Where:",
    .search = "Search",
    .back = "back",
    .forward = "forward",
    .newFolder = "New Folder",
    .name = "Name",
    .favourites = "Favorites",
    .goToFolder = "Go to the folder:",
    .go = "Go",
    .message = "Select the extension directory.",
};

// Assumed (Live.AChinesePanelNamesItsControlsInChinese, Live.AChinesePanelHeadsItsListsInChinese):
// all but the words for open, choose, sidebar, list view and "go to folder".
const PanelTexts simplifiedChinese{
    .open = "打开",
    .description = "打开",
    .choose = "选择",
    .cancel = "取消",
    .sidebar = "边栏",
    .listView = "列表视图",
    .viewOptions = "显示选项",
    .groupBy = "分组或排序方式",
    .where = "位置：",
    .search = "搜索",
    .back = "后退",
    .forward = "前进",
    .newFolder = "新建文件夹",
    .name = "名称",
    .favourites = "个人收藏",
    .goToFolder = "前往文件夹",
    .go = "前往",
    .message = "选择扩展程序目录",
};

// Assumed (Live.AGermanPanelNamesItsControlsInGerman, Live.AGermanPanelHeadsItsListsInGerman,
// Live.AGermanFilePanelOpens, Live.AGermanGoToSheetAsksInGerman): all.
const PanelTexts german{
    .open = "Öffnen",
    .description = "öffnen",
    .choose = "Auswählen",
    .cancel = "Abbrechen",
    .sidebar = "Seitenleiste",
    .listView = "Listenansicht",
    .viewOptions = "Darstellungsoptionen",
    .groupBy = "Gruppieren oder sortieren nach",
    .where = "Ort:",
    .search = "Suchen",
    .back = "zurück",
    .forward = "vorwärts",
    .newFolder = "Neuer Ordner",
    .name = "Name",
    .favourites = "Favoriten",
    .goToFolder = "Gehe zum Ordner:",
    .go = "Öffnen",
    .message = "Wähle das Erweiterungsverzeichnis aus.",
};

}  // namespace

const PanelTexts& panelTexts(Language language) {
  switch (language) {
    case Language::simplifiedChinese:
      return simplifiedChinese;
    case Language::german:
      return german;
    case Language::english:
      break;
  }
  return english;
}

std::string languageTag(Language language) {
  switch (language) {
    case Language::simplifiedChinese:
      return "zh-Hans";
    case Language::german:
      return "de";
    case Language::english:
      break;
  }
  return "en";
}

}  // namespace simulator
