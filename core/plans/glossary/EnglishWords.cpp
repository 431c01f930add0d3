#include "core/plans/glossary/Glossary.h"

namespace orvane {

const std::string_view englishWords =
    "delete trash remove clean clear purge free erase throw toss get rid discard wipe organize organise sort "
    "tidy arrange categorize categorise group find search show list what which how where why who when uninstall "
    "empty restore undo bring back put schedule every each daily weekly monthly automatically keep don t not "
    "never no except without but can could should would may might will shall do does did is are was were be been "
    "am has have had screenshot screenshots screen shot shots installer installers dmg dmgs pkg pkgs cache "
    "caches cached log logs login download downloads downloaded desktop document documents picture pictures "
    "photo photos image images video videos movie movies music duplicate duplicates copies copy bin app apps "
    "application applications program programs file files folder folders directory disk drive space all "
    "everything any anything some something nothing old older oldest stale new newer huge large larger largest "
    "big bigger biggest small smaller day days week weeks month months year years gb gig gigs gigabyte gigabytes "
    "mb meg megs megabyte megabytes a an one two three four five six seven eight nine ten few several last ago "
    "today yesterday the of in on at from to into for with by over under above below more less than least most "
    "that this these those and or my your me i you it its up out off away please safely safe make use used "
    "unused using need needed want wants go take takes run runs move moved moves tell give look here there home "
    "computer mac system browser temp temporary junk stuff thing things data build hello hi thanks";

}  // namespace orvane
