#include "tools/pack/Build.h"

#include <algorithm>
#include <filesystem>
#include <optional>

#include "tools/pack/Fonts.h"
#include "tools/pack/Pages.h"
#include "tools/pack/Pictures.h"
#include "tools/pack/Sounds.h"
#include "tools/pack/Tiles.h"

namespace pack {
namespace {

constexpr int32_t kFirstInstanceId = 100000, kFirstTileId = 10000000;
constexpr uint32_t kStreamedSound = 100, kHeldSound = 101;           // classes of sound records
constexpr int kLargestPlaceholder = 240, kTallestPlaceholder = 120;  // pixels

[[noreturn]] void Fail(const std::string& message)
{
    throw std::runtime_error(message);
}

// The name in a flat box; of a large picture only the middle, so that pages stay small.
Image Placeholder(const std::string& name, int width, int height)
{
    int boxWidth = std::min(width, kLargestPlaceholder);
    int boxHeight = std::min(height, kTallestPlaceholder);
    Image box = Pictures_Placeholder(name, boxWidth, boxHeight);
    Image whole;
    whole.width = width;
    whole.height = height;
    whole.bgra.assign(static_cast<size_t>(width) * height * 4, 0);
    int left = (width - boxWidth) / 2, top = (height - boxHeight) / 2;
    for (int row = 0; row < boxHeight; ++row) {
        auto from = box.bgra.begin() + static_cast<ptrdiff_t>(row) * boxWidth * 4;
        std::copy_n(from, boxWidth * 4,
                    whole.bgra.begin() + (static_cast<ptrdiff_t>(top + row) * width + left) * 4);
    }
    return whole;
}

// Renders pictures and remembers where their page entries go once the pages are full.
class Painter {
public:
    Painter(const std::string& folder, const Tables& tables, Built& built,
            const std::string& cacheFolder)
        : tables_(tables), built_(built), cache_(cacheFolder)
    {
        std::string error;
        if (!Pictures_Load(folder + "/art", library_, error)) Fail(error);
    }

    void Paint()
    {
        for (const SpriteRow& row : tables_.sprites) PaintSprite(row);
        for (const BackgroundRow& row : tables_.backgrounds) PaintBackground(row);
        for (const FontRow& row : tables_.fonts) PaintFont(row);
        std::string error;
        if (!pages_.Fill(error)) Fail(error);
        Settle();
    }

    std::vector<bool> Drawn() const
    {
        std::vector<bool> drawn;
        for (const BackgroundRow& row : tables_.backgrounds) {
            drawn.push_back(Pictures_Has(library_, row.name));
        }
        return drawn;
    }

private:
    std::vector<Image> Render(const std::string& name, int width, int height, int frames)
    {
        std::vector<Image> images;
        if (!Pictures_Has(library_, name)) {
            built_.placeholders.push_back(name);
            images.assign(static_cast<size_t>(frames), Placeholder(name, width, height));
            return images;
        }
        const uint64_t key = Pictures_Key(library_, name, width, height, frames);
        if (std::optional<std::vector<Image>> known = cache_.FindImages(key)) return *known;
        std::string error;
        if (!Pictures_Render(library_, name, width, height, frames, images, error)) Fail(error);
        cache_.KeepImages(key, images);
        return images;
    }

    void PaintSprite(const SpriteRow& row)
    {
        archive::Sprite sprite = row.sprite;
        std::vector<Image> images = Render(sprite.name, static_cast<int>(sprite.width),
                                           static_cast<int>(sprite.height), row.frames);
        if (row.boxOfPicture) {
            Pages_Box(images, sprite.bboxLeft, sprite.bboxTop, sprite.bboxRight, sprite.bboxBottom);
        }
        if (row.mask == MaskOf::box) {
            sprite.masks.push_back(Pages_Mask(static_cast<int>(sprite.width),
                                              static_cast<int>(sprite.height), sprite.bboxLeft,
                                              sprite.bboxTop, sprite.bboxRight, sprite.bboxBottom));
        } else if (row.mask == MaskOf::picture) {
            for (const Image& image : images) sprite.masks.push_back(Pages_Mask(image));
        }
        std::vector<int> places;
        const std::string& group = row.page.empty() ? sprite.name : row.page;
        for (const Image& image : images) places.push_back(pages_.Add(image, group));
        spritePlaces_.push_back(std::move(places));
        built_.content.sprites.push_back(std::move(sprite));
    }

    // Tiles are cut out of a background by their place in it, so it stays whole.
    void PaintBackground(const BackgroundRow& row)
    {
        std::vector<Image> images = Render(row.name, row.width, row.height, 1);
        archive::Background background;
        background.name = row.name;
        backgroundPlaces_.push_back(
            pages_.Add(images[0], row.page.empty() ? row.name : row.page, Trim::nothing));
        built_.content.backgrounds.push_back(std::move(background));
    }

    void PaintFont(const FontRow& row)
    {
        archive::Font font = row.font;
        Image picture;
        Fonts_Bake(row, font, picture);
        fontPlaces_.push_back(pages_.Add(picture, "fonts", Trim::nothing));
        built_.content.fonts.push_back(std::move(font));
    }

    void Settle()
    {
        archive::Content& content = built_.content;
        for (size_t i = 0; i < spritePlaces_.size(); ++i) {
            for (int place : spritePlaces_[i])
                content.sprites[i].frames.push_back(pages_.Entry(place));
        }
        for (size_t i = 0; i < backgroundPlaces_.size(); ++i) {
            content.backgrounds[i].entry = pages_.Entry(backgroundPlaces_[i]);
        }
        for (size_t i = 0; i < fontPlaces_.size(); ++i) {
            content.fonts[i].entry = pages_.Entry(fontPlaces_[i]);
        }
        content.pages = pages_.Encode(cache_);
        built_.pageUse = pages_.Usage();
        cache_.Prune();
    }

    const Tables& tables_;
    Built& built_;
    Cache cache_;
    PictureLibrary library_;
    PageFiller pages_;
    std::vector<std::vector<int>> spritePlaces_;
    std::vector<int> backgroundPlaces_, fontPlaces_;
};

void BuildSounds(const Tables& tables, archive::Content& content)
{
    for (const SoundRow& row : tables.sounds) {
        archive::Sound sound;
        sound.name = row.name;
        sound.flags = row.notes.empty() ? kStreamedSound : kHeldSound;
        sound.fileName = row.notes.empty() ? row.file : row.name + ".wav";
        sound.extension = sound.fileName.substr(sound.fileName.rfind('.'));
        if (!row.notes.empty()) {
            sound.audioIndex = static_cast<int32_t>(content.waves.size());
            content.waves.push_back(Sounds_Wave(row.notes));
        }
        content.sounds.push_back(std::move(sound));
    }
}

archive::Room StartRoom(const RoomRow& row, int codeId)
{
    archive::Room room;
    room.name = row.name;
    room.width = kRoomWidth;
    room.height = kRoomHeight;
    room.colour = row.colour;
    room.codeId = codeId;
    if (row.background >= 0) {
        room.backgrounds[0].visible = true;
        room.backgrounds[0].backgroundIndex = row.background;
    }
    return room;
}

// Levels and pages of the map with the scenery that stands in them.
class Grounds {
public:
    Grounds(const std::string& folder, const Tables& tables, Built& built)
        : of_(tables.rooms.size(), -1), levels_(tables.rooms.size())
    {
        for (size_t i = 0; i < tables.rooms.size(); ++i) {
            const RoomRow& row = tables.rooms[i];
            const int number = NumberIn(row.name);
            if (row.level.empty()) {
                if (row.name == "room_menu" + std::to_string(number)) {
                    Keep(i, Site(tables, row, number));
                }
                continue;
            }
            const std::string file = "levels/" + row.level + ".txt";
            if (!std::filesystem::exists(folder + "/" + file)) {
                built.emptyLevels.push_back(row.name);
                continue;
            }
            levels_[i] = Level_Parse(tables, file, File_Text(folder + "/" + file, file));
            Keep(i, Site(*levels_[i], number));
        }
        built.shortages =
            Scenery_Place(tables, Scenery_Parse(tables, Table_Read(folder, "scenery.txt")), sites_);
    }

    const std::optional<Level>& LevelOf(size_t room) const { return levels_[room]; }
    Site* SiteOf(size_t room)
    {
        return of_[room] < 0 ? nullptr : &sites_[static_cast<size_t>(of_[room])];
    }

private:
    // The number at the end of a name, 0 without one.
    static int NumberIn(const std::string& name)
    {
        const size_t at = name.find_last_not_of("0123456789") + 1;
        long long number = 0;
        Parse_Number(name.substr(at), number);
        return static_cast<int>(number);
    }

    void Keep(size_t room, Site site)
    {
        of_[room] = static_cast<int>(sites_.size());
        sites_.push_back(std::move(site));
    }

    std::vector<int> of_;  // site of each room, -1 without one
    std::vector<std::optional<Level>> levels_;
    std::vector<Site> sites_;
};

archive::RoomInstance MakeInstance(const PlacedInstance& placed, int32_t id)
{
    archive::RoomInstance instance;
    instance.x = placed.x;
    instance.y = placed.y;
    instance.objectIndex = placed.object;
    instance.id = id;
    instance.scaleX = static_cast<float>(placed.scaleX);
    instance.scaleY = static_cast<float>(placed.scaleY);
    instance.colour = placed.colour;
    return instance;
}

}  // namespace

void Build_Rooms(const std::string& folder, const Tables& tables, const CodePlan& plan,
                 const std::vector<bool>& drawn, Built& built)
{
    const std::vector<TileSet> sets = TileSets_Parse(tables, Table_Read(folder, "tilesets.txt"));
    Grounds grounds(folder, tables, built);
    const auto hasPicture = [&](int background) {
        return static_cast<bool>(drawn[static_cast<size_t>(background)]);
    };
    archive::Content& content = built.content;
    int32_t instanceId = kFirstInstanceId, tileId = kFirstTileId;
    for (size_t i = 0; i < tables.rooms.size(); ++i) {
        archive::Room room = StartRoom(tables.rooms[i], plan.rooms[i]);
        std::vector<PlacedInstance> instances = tables.rooms[i].instances;
        const auto append = [&](const std::vector<PlacedInstance>& more) {
            instances.insert(instances.end(), more.begin(), more.end());
        };
        Site* site = grounds.SiteOf(i);
        if (const std::optional<Level>& level = grounds.LevelOf(i)) {
            append(level->instances);
            room.tiles = Tiles_Lay(sets, *level, *site, hasPicture);
        }
        if (site && site->IsPage()) room.tiles = Tiles_LayPage(sets, *site, hasPicture);
        if (site) append(site->placed);
        for (const PlacedInstance& placed : instances) {
            room.instances.push_back(MakeInstance(placed, instanceId++));
        }
        for (archive::RoomTile& tile : room.tiles) tile.id = tileId++;
        content.rooms.push_back(std::move(room));
        content.general.roomOrder.push_back(static_cast<uint32_t>(i));
    }
    content.general.lastInstanceId = instanceId - 1;
    content.general.lastTileId = tileId - 1;
}

void Build_Objects(const Tables& tables, const CodePlan& plan, archive::Content& content)
{
    for (size_t i = 0; i < tables.objects.size(); ++i) {
        archive::Object object = tables.objects[i].object;
        for (size_t e = 0; e < tables.objects[i].events.size(); ++e) {
            const EventRow& event = tables.objects[i].events[e];
            object.events[event.type].push_back(
                {static_cast<uint32_t>(event.subtype), plan.events[i][e]});
        }
        for (std::vector<archive::Event>& events : object.events) {
            std::sort(events.begin(), events.end(),
                      [](const archive::Event& a, const archive::Event& b) {
                          return a.subtype < b.subtype;
                      });
        }
        content.objects.push_back(std::move(object));
    }
}

Built Build_Archive(const std::string& folder, const Tables& tables, const CodePlan& plan,
                    const std::string& cacheFolder)
{
    Built built;
    archive::Content& content = built.content;
    content.general = tables.general;
    content.options = tables.options;
    Painter painter(folder, tables, built, cacheFolder);
    painter.Paint();
    BuildSounds(tables, content);
    for (size_t i = 0; i < tables.scripts.size(); ++i) {
        content.scripts.push_back({tables.scripts[i].name, plan.scripts[i]});
    }
    Build_Objects(tables, plan, content);
    Build_Rooms(folder, tables, plan, painter.Drawn(), built);
    return built;
}

}  // namespace pack
