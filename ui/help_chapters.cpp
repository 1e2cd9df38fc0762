// The texts of the built-in help. Shortcuts are written as Linux shows them; keep them in
// step with the menus in components/AppMenuBar.qml and the zoom range with kit/vx_zoom.h.

#include "ui/help.h"

#include "backup/branding.h"

namespace quarrydex::ui {

namespace {

const char* const welcomeText =
    "Orlo Quarrydex is an offline field guide and identifier for rocks, minerals, gemstones, "
    "crystals, fossils and meteorites.\n"
    "\n"
    "It needs no internet connection, ever. Your photos, your collection, your identification "
    "history and your favorites are kept in one folder on this computer and are never sent "
    "anywhere.\n"
    "\n"
    "QUICK START\n"
    "1. Pick a section in the sidebar on the left: Identify, Library and Favorites under "
    "Find; My Collection, History and Backup under Mine; About & Help under Help. Ctrl+1 to "
    "Ctrl+7 jump to them in that order. In the sidebar itself (press Tab to get there), Up "
    "and Down move between them.\n"
    "2. Give Quarrydex a photo of your stone: File > Choose Photo… (Ctrl+O), Edit > Paste "
    "Photo (Ctrl+Shift+V) or File > Take Photo with Camera… (Ctrl+Shift+T). You can also drop "
    "a picture onto the Identify screen.\n"
    "3. Answer any of the guided questions on the Identify screen: color, luster, shape, "
    "scratch hardness, streak, weight, magnet and vinegar. Every answer narrows the list of "
    "matches far more than the photo can.\n"
    "4. When you are happy with a match, add the stone to My Collection with your photo, "
    "where you found it and your notes.\n"
    "\n"
    "WHO MAKES IT: Orlo Quarrydex is designed and published by Fernwick. See \"About Orlo\", "
    "the next to last chapter in the list.";

const char* const identifyText =
    "Quarrydex does NOT use an AI image model. Your photo gives it exactly one clue: the "
    "average color in the middle of the picture. Color is a weak clue. Many minerals come in "
    "several colors, different minerals share the same color, and lamps and cameras shift it. "
    "So a photo on its own is always treated as a rough guess.\n"
    "\n"
    "The real work is done by the guided questions: COLOR, LUSTER (how it shines), SHAPE "
    "(crystal form or texture), SCRATCH HARDNESS, STREAK, WEIGHT in your hand, MAGNET and "
    "VINEGAR FIZZ. \"The home tests\" explains how to do each one with things you have at "
    "home.\n"
    "\n"
    "SKIPPING IS FINE: answer only what you can test. A question left at \"Not tested\" "
    "counts neither for nor against any stone.\n"
    "\n"
    "MOST HELPFUL NEXT names the unanswered question that would narrow the current list the "
    "most. If you only have time for one more test, do that one.\n"
    "\n"
    "MATCHES: each candidate shows its share of confidence among the species in the library, "
    "never shown above 95%, because a few home tests cannot prove what a stone is. The list "
    "as a whole gets a label:\n"
    "• Strong: several answers fit the top stone and leave it well ahead of the rest.\n"
    "• Likely: the best fit so far, with close look-alikes still in the running.\n"
    "• Possible: several species still fit your answers.\n"
    "• Rough guess: based on the photo color alone. A photo without answers is always a "
    "rough guess.\n"
    "\n"
    "After you press Identify once, the list updates the moment you change an answer or the "
    "photo. File > New Identification (Ctrl+N) clears the photo and the answers and starts "
    "over; the finished identification stays in History.\n"
    "\n"
    "VALUABLE SPECIMENS: before you buy, sell, insure or cut a stone, have it checked by a "
    "geologist or a gemologist. A museum or a local rock and mineral club can often help.";

const char* const testsText =
    "SCRATCH HARDNESS: minerals are ranked on the Mohs scale, from talc (1) to diamond (10). "
    "Try to scratch a clean, flat, hidden spot of the stone with, in this order, your "
    "fingernail (about 2.5), a copper coin (about 3.5), a steel knife blade or nail (about "
    "5.5) and the edge of a piece of glass (about 5.5). Press firmly, then rub the mark with "
    "a wet finger. A real scratch is a groove that stays; a gray line of metal left behind by "
    "a softer tool rubs off. If nothing scratches the stone and the stone scratches glass, it "
    "is harder than about 5.5, like quartz (7).\n"
    "\n"
    "STREAK: rub the stone firmly across the back of an unglazed white tile (the rough "
    "underside of a bathroom or kitchen tile works) and look at the color of the powder. "
    "Streak is steadier than the color of the piece: hematite can look black, gray or red but "
    "always leaves a red-brown streak, and brassy pyrite leaves a greenish-black one. Stones "
    "harder than the tile, such as quartz, leave no powder and scratch the tile instead; "
    "answer \"No streak\".\n"
    "\n"
    "LUSTER is how a fresh surface reflects light. Tilt it under a lamp:\n"
    "• Metallic: like polished metal (galena, pyrite).\n"
    "• Glassy: like a window (quartz).\n"
    "• Brilliant: a hard, diamond-like sparkle (diamond, zircon).\n"
    "• Pearly: like the inside of a shell (the flat faces of mica or talc).\n"
    "• Silky: a soft, moving sheen from fine fibers (tiger's eye, satin spar).\n"
    "• Waxy or greasy: like a candle or resin (chalcedony, amber).\n"
    "• Dull or earthy: like dry clay or chalk.\n"
    "• Glittery: scattered shiny flakes, as in mica schist.\n"
    "\n"
    "WEIGHT: hold the stone and compare it with an ordinary rock or a piece of quartz of the "
    "same size. Most common stones feel about the same. Galena, barite, metal ores and iron "
    "meteorites feel surprisingly heavy; pumice and amber feel light, and pumice can even "
    "float.\n"
    "\n"
    "MAGNET: hold a strong fridge magnet against the stone, or hang the stone on a thread and "
    "bring the magnet close. Magnetite and most meteorites pull clearly; pyrrhotite pulls "
    "weakly. Almost everything else does not react at all.\n"
    "\n"
    "VINEGAR: put a drop of white vinegar on a hidden spot and watch with a magnifier. "
    "Carbonates such as calcite, limestone and marble fizz with tiny bubbles. Dolomite often "
    "fizzes only when powdered, so scratch a little powder first. Rinse with water "
    "afterwards; the acid etches soft stones and pearls.\n"
    "\n"
    "EYES: wear safety glasses when you scratch, strike or break stones; chips of glass and "
    "quartz are sharp and fly further than you expect.";

const char* const libraryText =
    "LIBRARY lists every species Quarrydex knows: minerals, gemstones, rocks, fossils and "
    "meteorites, and shows a different stone of the day every day. Search by name, color, place, "
    "formula or "
    "birthstone, and narrow the list to one type with the Category choice. Each entry opens "
    "a page with the hardness, composition, crystal system, specific gravity, luster, "
    "streak, cleavage, where it is found, its history and uses, how to care for it and how "
    "to tell it from its look-alikes.\n"
    "\n"
    "FAVORITES: press the star on any library entry to keep it in Favorites for quick "
    "reference; press it again to remove it. Favorites are sorted by name.\n"
    "\n"
    "The library is part of the program and works offline like everything else.";

const char* const collectionText =
    "MY COLLECTION is your own catalogue of the stones you own. Each piece keeps your photo, "
    "a name, the species when you know it, how you got it (found, bought, gift or traded), "
    "where and when, and your notes. Add one by hand with Add Specimen, or from an "
    "identification or a library entry with Add to My Collection. Open a piece to see it, "
    "edit it or delete it.\n"
    "\n"
    "HISTORY keeps every identification: the photo, the answers you gave and the top "
    "matches at the time, newest first. Refining the answers of one identification updates "
    "its entry instead of adding a new one. History keeps the 300 most recent "
    "identifications; delete entries one by one or clear them all with Clear History, which "
    "leaves your collection and favorites alone.\n"
    "\n"
    "Both stay on this computer, in your personal data folder. Use Backup to keep a copy "
    "somewhere safe.";

const char* const backupText =
    "BACKUP writes your collection, history and favorites, photos included, into one file. "
    "Plug in a flash drive and choose it in the Backup section: Quarrydex writes the file "
    "into a folder named \"Quarrydex Backups\" on the drive and then reads it back to verify "
    "it. \"Save Backup As…\" saves the same file anywhere you like. Backup files are named "
    "with the date and time, such as \"Quarrydex Backup 2026-10-18 14.05.09.json\".\n"
    "\n"
    "RESTORE reads a backup file and adds what is missing. It never deletes anything and "
    "never overwrites a piece you already have, so restoring the same file twice is "
    "harmless. The file is checked first: anything that is not a Quarrydex backup, or that "
    "was made by a newer version of Quarrydex, is refused with a message that says why, and "
    "nothing is changed. When it finishes, Quarrydex tells you how many pieces, history "
    "entries and favorites it added.\n"
    "\n"
    "EXPORT saves your collection as a CSV file that any spreadsheet can open.\n"
    "\n"
    "TIP: keep at least one backup away from this computer, for example on a flash drive in "
    "another room or another house.";

const char* const lookText =
    "THEMES: choose a finish in the Theme menu. All six are dark, to keep photos and colors "
    "easy to judge:\n"
    "• Malachite: green on dark slate.\n"
    "• Cobalt: deep anodized blue.\n"
    "• Rose Quartz: soft rose pink.\n"
    "• Amethyst: violet.\n"
    "• Obsidian: black.\n"
    "• Hematite: brushed gray metal.\n"
    "The whole window changes at once, and Quarrydex remembers your choice between runs.\n"
    "\n"
    "ZOOM makes everything in the window larger or smaller, from 85% to 200%:\n"
    "• View > Zoom In (Ctrl++) and View > Zoom Out (Ctrl+-) change it in steps of 15%.\n"
    "• View > Actual Size (100%) (Ctrl+0) goes back to normal.\n"
    "• View > Zoom Level picks 85%, 100%, 115%, 130%, 150%, 175% or 200% directly.\n"
    "The zoom is remembered between runs too. When the zoomed screen is larger than the "
    "window, scroll bars appear so you can reach every part of it.";

const char* const safetyText =
    "SAFETY: a few minerals are toxic. Cinnabar contains mercury; galena, wulfenite and "
    "vanadinite contain lead; realgar, orpiment and arsenopyrite contain arsenic. Handle "
    "them as little as you can, keep them away from children and food, and wash your hands "
    "after touching any specimen.\n"
    "• Never lick, taste, heat or grind a stone to test it.\n"
    "• Wear eye protection when scratching, striking or breaking stones.\n"
    "• Do not sand, saw or drill serpentine or other rocks that may contain asbestos fibers; "
    "the dust is dangerous to breathe.\n"
    "• Collecting rules differ from place to place. In the United States, collecting "
    "vertebrate fossils on public land requires a permit, and national parks allow no "
    "collecting at all. Always ask before collecting on private land.\n"
    "\n"
    "PRIVACY: Quarrydex works entirely on this computer. Your photos and data are never sent "
    "anywhere. There are no accounts, no advertising and no tracking. The only time it uses "
    "the internet is when you choose Help > Visit Fernwick, which opens the website in your "
    "web browser.";

QString fromView(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString aboutText() {
    return QStringLiteral(
               "Orlo Quarrydex is designed and published by %1. This is version %2 (build %3).\n"
               "\n"
               "WEBSITE: %4. Help > Visit %1 opens it in your web browser; when no browser "
               "opens, the address is copied to the clipboard.\n"
               "\n"
               "HELP is always in the Help menu: Help > Orlo Quarrydex Help (F1 or Ctrl+?) "
               "opens this window, and Help > How Identification Works goes straight to the "
               "chapter on identifying. The About & Help section of the sidebar lists the same "
               "chapters. In this window, Up and Down pick a chapter; Tab moves to the text, "
               "which Up, Down, Page Up and Page Down scroll.\n"
               "\n"
               "THE SAMPLE PHOTOS are the work of photographers who share them under free "
               "licences; their names are in the last chapter, \"Sample collection & "
               "credits\".")
        .arg(fromView(Branding::company), fromView(Branding::version), fromView(Branding::build),
             fromView(Branding::websiteText));
}

} // namespace

std::vector<HelpChapter> baseHelpChapters() {
    return {
        {"welcome", "Welcome", "hand.wave", QString::fromUtf8(welcomeText)},
        {"identify", "Identifying a stone", "viewfinder", QString::fromUtf8(identifyText)},
        {"tests", "The home tests", "testtube.2", QString::fromUtf8(testsText)},
        {"library", "Library & favorites", "books.vertical", QString::fromUtf8(libraryText)},
        {"collection", "Collection & history", "square.grid.2x2",
         QString::fromUtf8(collectionText)},
        {"backup", "Backup & restore", "externaldrive", QString::fromUtf8(backupText)},
        {"look", "Themes & zoom", "paintpalette", QString::fromUtf8(lookText)},
        {"safety", "Safety & privacy", "exclamationmark.shield", QString::fromUtf8(safetyText)},
        {"about", "About Orlo", "info.circle", aboutText()},
    };
}

HelpChapter samplesHelpChapter(const std::optional<std::string>& credits) {
    QString text = QString::fromUtf8(
        "NEW TO QUARRYDEX? Choose Help > Load Sample Collection (or press \"Load Sample "
        "Collection\" on the empty My Collection screen).\n"
        "\n"
        "This adds a ready-made set of sample specimens to My Collection, each with a real "
        "photo and a link to its library entry, plus a few example identifications in "
        "History, so you can try every feature before you have photographed a stone of your "
        "own. Open a sample and identify its photo to see how the identifier works. The "
        "samples are marked as samples: Help > Remove Sample Collection removes all of them "
        "again and never touches the stones you added yourself. On the Identify screen, Try a "
        "Sample Photo runs an identification on one of the same photos.\n"
        "\n"
        "PHOTO CREDITS: the sample photos come from Wikimedia Commons and are used under the "
        "free licences named below.\n"
        "\n");
    if (credits && !credits->empty()) {
        text += QString::fromStdString(*credits);
    } else {
        text += QStringLiteral("(No sample photos are included in this copy.)");
    }
    text += QStringLiteral("\n\nThank you to the photographers for sharing their work freely.");
    return {"samples", "Sample collection & credits", "photo.stack", text};
}

} // namespace quarrydex::ui
