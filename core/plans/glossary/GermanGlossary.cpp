#include "core/plans/glossary/Glossary.h"

#include <array>

namespace orvane {
namespace {

constexpr std::array germanRows{
    GlossaryRow{"über|mehr als|ab|oberhalb|länger als", "over"},
    GlossaryRow{"mindestens|wenigstens", "at least"},
    GlossaryRow{"unter|weniger|kleiner*|höchstens|maximal|bis zu|jünger*|neu|neue*|aktuelle*", "under"},
    GlossaryRow{"vor", "ago"},
    GlossaryRow{"seit", "since"},
    GlossaryRow{"lösch*|gelöscht*|entfern*|beseitig*|wegwerf*|wegschmeiß*|weg damit|schmeiß*|wirf|werf|werfe|weg|raus",
                "delete"},
    GlossaryRow{"in den papierkorb|zum papierkorb", "delete"},
    GlossaryRow{"verschieb*|leg|lege|legen|verschoben|tu|tue|bring|bringe", ""},
    GlossaryRow{"bereinig*|säuber*|reinig*|putz*|sauber mach*|ausmist*|miste|mist", "clean"},
    GlossaryRow{"leer|leere|leeren|leert|entleer*|ausleer*", emptyOrClear},
    GlossaryRow{"leerer|leeres|leere dateien|leere ordner|leeren ordner", "empty"},
    GlossaryRow{"freimach*|freigeb*|freiräum*|frei|schaff*", "free"},
    GlossaryRow{"aufräum*|aufgeräumt|räum|räume|räumen|ordnung", tidyOrClean},
    GlossaryRow{"ordne|ordnen|ordnet|sortier*|organisier*|einsortier*|gruppier*|kategorisier*", "sort"},
    GlossaryRow{"find|finde|finden|such|suche|suchen|aufspür*", "find"},
    GlossaryRow{"zeig|zeige|zeigen|zeigt|anzeigen|ansehen", "show"},
    GlossaryRow{"liste|auflisten|list|aufzählen", "list"},
    GlossaryRow{"deinstallier*", "uninstall"},
    GlossaryRow{
        "wiederherstell*|wieder her|wieder zurück|zurückhol*|zurückleg*|wiederhol*|zurückbring*|hol|hole|restaurier*",
        "restore"},
    GlossaryRow{"rückgängig|widerruf*", "undo"},
    GlossaryRow{"plane|planen|zeitplan*|einplan*", "schedule"},
    GlossaryRow{"jede|jeden|jedes", "every"},
    GlossaryRow{"täglich", "every day"},
    GlossaryRow{"wöchentlich|alle wochen", "every week"},
    GlossaryRow{"monatlich", "every month"},
    GlossaryRow{"automatisch*", "automatically"},
    GlossaryRow{"behalt*|behält|aufbewahr*|aufheb*|bewahr*|lass|lasse|lassen|schon|schone", "keep"},
    GlossaryRow{"nicht|niemals|nie|kein|keine|keinen|keiner|ja nicht|bloß nicht|vermeid*|finger weg", "don't"},
    GlossaryRow{"nicht mehr|nicht benutzt*|nicht mehr benutzt*|nicht mehr gebraucht*|unbenutzt*|ungenutzt*|nicht "
                "gebraucht*|nicht mehr brauche",
                "unused"},
    GlossaryRow{"außer|ausgenommen|bis auf|ausser", "except"},
    GlossaryRow{"gefahrlos|bedenkenlos|sicher|unbedenklich*", "safely"},
    GlossaryRow{"was kann ich|was könnte ich|was darf ich|kann ich|darf ich|was kann man", "what can i"},
    GlossaryRow{"was|wozu", "what"},
    GlossaryRow{"welche|welcher|welches|welchen", "which"},
    GlossaryRow{"wie|wieviel|wie viel|wie viele|wieviele", "how"},
    GlossaryRow{"wo|woher|warum|wieso|weshalb", "where"},
    GlossaryRow{"soll ich|sollte ich|muss ich", "should i"},
    GlossaryRow{"bildschirmfoto*|bildschirmaufnahm*|bildschirmabzüg*|screenshot|screenshots|bildschirmschnappschuss|"
                "bildschirmschnappschüsse",
                "screenshots"},
    GlossaryRow{"installer|installers|installationsdatei*|installationspaket*|installationsprogramm*|installationsmedi*"
                "|diskimage|diskimages|disk images|abbild|abbilder|setups",
                "installers"},
    GlossaryRow{
        "cache|caches|zwischenspeicher|zwischenspeichern|zwischenspeichers|zwischengespeichert*|temporäre dateien",
        "caches"},
    GlossaryRow{"log|logs|logdatei*|protokoll|protokolle|protokollen|protokolldatei*|logfile|logfiles", "logs"},
    GlossaryRow{"download|downloads|heruntergeladen*|runtergeladen*", "downloads"},
    GlossaryRow{"schreibtisch|schreibtisches|schreibtischs|desktop|arbeitsplatz", "desktop"},
    GlossaryRow{"dokument|dokumente|dokumenten", "documents"},
    GlossaryRow{"bild|bilder|bildern|foto|fotos", "pictures"},
    GlossaryRow{"video|videos|film|filme|filmen", "videos"},
    GlossaryRow{"musik|lieder", "music"},
    GlossaryRow{"duplikat*|doppelt*|dublette*|mehrfach*|identisch*", "duplicates"},
    GlossaryRow{"papierkorb|papierkorbs|papierkorbes|mülleimer", "trash"},
    GlossaryRow{"app|apps|programm|programme|programmen|anwendung|anwendungen|software", "app"},
    GlossaryRow{"datei|dateien|files", "files"},
    GlossaryRow{"ordner|ordners|ordnern|verzeichnis|verzeichnisse", "folder"},
    GlossaryRow{"festplatte|platte|laufwerk", "disk"},
    GlossaryRow{"platz|speicherplatz|speicher", "space"},
    GlossaryRow{"alle|alles|allen|aller|sämtliche*|ganze|ganzen|gesamte*", "all"},
    GlossaryRow{"alt|alte|alten|altes|alter|veraltet*|uralt*", "old"},
    GlossaryRow{"älter|ältere|älteren|älteres|älteste*|her sind|her ist|vor mehr als|vor über|seit mehr als|seit über",
                "older"},
    GlossaryRow{
        "groß|große|großen|großes|größer|größere|größeren|größeres|größte*|riesig*|riesen|dicke|dicken|umfangreich*",
        "large"},
    GlossaryRow{"tag|tage|tagen|tags", "day"},
    GlossaryRow{"woche|wochen", "week"},
    GlossaryRow{"monat|monate|monaten|monats", "month"},
    GlossaryRow{"jahr|jahre|jahren|jahres", "year"},
    GlossaryRow{"ein halbes jahr|halbes jahr|halben jahr|halbjahr|einem halben jahr", "6 month"},
    GlossaryRow{"quartal|ein quartal|vierteljahr|ein vierteljahr|einem vierteljahr", "3 month"},
    GlossaryRow{"anderthalb jahre|eineinhalb jahre|anderthalb jahren|eineinhalb jahren", "18 month"},
    GlossaryRow{"vierzehn tage|vierzehn tagen", "14 day"},
    GlossaryRow{"gb|gigabyte|gigabytes|gig|giga", "gb"},
    GlossaryRow{"mb|megabyte|megabytes|meg|mega", "mb"},
    GlossaryRow{"ein|eine|einen|einem|einer|eines|eins", "1"},
    GlossaryRow{"zwei", "2"},
    GlossaryRow{"drei", "3"},
    GlossaryRow{"vier", "4"},
    GlossaryRow{"fünf", "5"},
    GlossaryRow{"sechs", "6"},
    GlossaryRow{"sieben", "7"},
    GlossaryRow{"acht", "8"},
    GlossaryRow{"neun", "9"},
    GlossaryRow{"zehn", "10"},
    GlossaryRow{"elf", "11"},
    GlossaryRow{"zwölf", "12"},
    GlossaryRow{"vierzehn", "14"},
    GlossaryRow{"fünfzehn", "15"},
    GlossaryRow{"zwanzig", "20"},
    GlossaryRow{"dreißig", "30"},
    GlossaryRow{"vierzig", "40"},
    GlossaryRow{"fünfzig", "50"},
    GlossaryRow{"sechzig", "60"},
    GlossaryRow{"neunzig", "90"},
    GlossaryRow{"hundert|einhundert", "100"},
    GlossaryRow{"zweihundert", "200"},
    GlossaryRow{"fünfhundert", "500"},
    GlossaryRow{"tausend", "1000"},
    GlossaryRow{"paar|einige|einigen|mehrere|mehreren", "few"},
    GlossaryRow{"gestern", "yesterday"},
    GlossaryRow{"heute", "today"},
    GlossaryRow{"letzte|letzten|letzter|letztes|letztem|vergangene*", "last"},
    GlossaryRow{"und", "and"},
    GlossaryRow{"der|die|das|den|dem|des|oder|von|vom|in|im|ins|auf|an|am|aus|bei|beim|mit|zu|zum|zur|für|als|mehr|"
                "etwa|circa|ca|sind|ist|war|waren|hat|haben|habe|werden|wurden|wurde|mein|meine|meinen|meinem|meiner|"
                "meines|dein|deine|mir|mich|ich|du|sie|es|man|kannst|könntest|könnten|bitte|mal|doch|einmal|nun|jetzt|"
                "möchte|will|wollen|soll|sollen|dort|dran|davon|darin|daraus|dazu|liegen|liegt|stell|stelle|stellen|"
                "mach|mache|machen|nimm|rechner|computer|mac|pc|system|inhalt|sehr|ganz|auch|noch|gemacht|erstellt*|"
                "entstanden|aufgenommen|so|her|zurück|wieder|"
                "hinweg|welches|größe|lang|anschauen",
                ""},
};

}  // namespace

const GlossaryRows germanGlossary = germanRows;

}  // namespace orvane
