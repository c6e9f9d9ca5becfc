#include "simulator/panel/panel_texts.h"

namespace simulator {
namespace {

// Assumed (Live.AnEnglishPanelNamesItsControlsInEnglish, Live.AnEnglishPanelHeadsItsListsInEnglish,
// Live.AnEnglishGoToSheetAsksInEnglish, Live.AnEnglishPanelIsDescribedAsOpen): what is not in
// anybody's printout of a panel: the panel's description (inferred by others), New Folder, the
// pop-up's title, the lists' headers, the text of the go-to sheet. Assumed (no test can tell:
// current systems do not show it): `go`, also below.
const PanelTexts english{
    .open = "Open",
    .description = "open",
    .choose = "Choose",
    .cancel = "Cancel",
    .sidebar = "sidebar",
    .listView = "list view",
    .columnView = "column view",
    .iconView = "icon view",
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
};

// Assumed (Live.AChinesePanelNamesItsControlsInChinese, Live.AChinesePanelHeadsItsListsInChinese,
// Live.AChinesePanelNamesItsColumnsInChinese, Live.AChinesePanelNamesItsIconsInChinese,
// Live.AChinesePanelHasNoDescription): all but the words for open, choose, sidebar, list view and
// "go to folder". Nobody saw a description of the panel.
const PanelTexts simplifiedChinese{
    .open = "打开",
    .description = "",
    .choose = "选择",
    .cancel = "取消",
    .sidebar = "边栏",
    .listView = "列表视图",
    .columnView = "分栏视图",
    .iconView = "图标视图",
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
};

// Assumed (Live.AGermanPanelNamesItsControlsInGerman, Live.AGermanPanelHeadsItsListsInGerman,
// Live.AGermanPanelNamesItsColumnsInGerman, Live.AGermanPanelNamesItsIconsInGerman,
// Live.AGermanFilePanelOpens, Live.AGermanGoToSheetAsksInGerman,
// Live.AGermanPanelHasNoDescription): all.
const PanelTexts german{
    .open = "Öffnen",
    .description = "",
    .choose = "Auswählen",
    .cancel = "Abbrechen",
    .sidebar = "Seitenleiste",
    .listView = "Listenansicht",
    .columnView = "Spaltenansicht",
    .iconView = "Symbolansicht",
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
};

// From the browser's resource files. Assumed (no test can tell: it takes a browser and a page that
// uploads): the question after an upload, and everything about it in Chinese and German.
const BrowserTexts english_browser{
    .message = "Select the extension directory.",
    .select = "Select",
    .upload = "Upload",
    .cancel = "Cancel",
    .askUpload = "Upload files to this site?",
};
const BrowserTexts chinese_browser{
    .message = "选择扩展程序目录。",
    .select = "选择",
    .upload = "上传",
    .cancel = "取消",
    .askUpload = "要将文件上传到此网站吗？",
};
const BrowserTexts german_browser{
    .message = "Erweiterungsverzeichnis auswählen",
    .select = "Auswählen",
    .upload = "Hochladen",
    .cancel = "Abbrechen",
    .askUpload = "Dateien auf diese Website hochladen?",
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

const BrowserTexts& browserTexts(Language language) {
  switch (language) {
    case Language::simplifiedChinese:
      return chinese_browser;
    case Language::german:
      return german_browser;
    case Language::english:
      break;
  }
  return english_browser;
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
