// Reading and writing ".layout" files.
//
//   1. Small helpers: attributes, reports, the paths of layout files
//   2. Loading: files on disk and in the resources, the document, windows, metrics, properties
//   3. Saving: the document, window trees, geometry and properties
#include "Canvas/UI/Layout.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Dialog/Base.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Window.h"
#include "Canvas/UI/WindowFactory.h"
#include "Canvas/UI/detail/DebugReport.h"
#include "Canvas/UI/detail/LayoutPath.h"
#include "TvBase/Util/File.h"
#include "TvBase/Util/FileIOException.h"
#include "TvBase/Util/PropertySerializer.h"
#include "TvBase/Util/ResourceManager.h"

#include <tinyxml2.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace UI
{

char const* const LayoutDocumentType = "TvCanvasLayout-1";

namespace
{

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

// ============================================================================================
// 1. Small helpers
// ============================================================================================

/// Coordinates and sizes beyond this are nonsense for a window, and their sums could overflow.
int const GeometryLimit = 1000000;
/// Larger files are not layouts; reading them would only cost memory.
unsigned long long const MaxLayoutFileSize = 16 * 1024 * 1024;
/// Layouts that name further layouts ("Layout" attributes), counted over one load.
unsigned int const MaxNestedLayouts = 256;
/// Window levels one load may build, nested layouts included. One file nests no deeper than
/// the XML reader allows, but a chain of files would otherwise grow a window tree too deep for
/// the recursion of everything that walks it.
unsigned int const MaxWindowDepth = 256;

/// What one top-level load carries through its nested layouts.
struct LoadContext
{
    Frame* frame;
    /// The files being loaded, outermost first: a layout that names one of them is refused.
    std::vector<String> openFiles;
    unsigned int nestedLoads = 0;
    /// Window levels below the window the load began at.
    unsigned int windowDepth = 0;
};

String attribute(XMLElement const* element, char const* name)
{
    char const* value = element->Attribute(name);
    return value ? String(value) : String("");
}

bool hasNonEmptyAttribute(XMLElement const* element, char const* name)
{
    char const* value = element->Attribute(name);
    return value && *value;
}

int clampInt(int value, int low, int high)
{
    return std::max(low, std::min(high, value));
}

Canvas* canvasOf(Frame* frame, Window* window)
{
    if (window)
        return window->GetCanvas();
    return frame ? frame->GetCanvas() : nullptr;
}

// ============================================================================================
// 2. Loading
// ============================================================================================

bool loadWindowTree(LoadContext& context, FolderPath const& folder, Window* parent,
                    XMLElement const* element);
bool loadFromFolderOrResources(LoadContext& context, FolderPath const& folder, String const& file,
                               Window* window);

/// Parses `bytes` (`size` of them, with a NUL after them). False with a report on a parse error.
bool parse(XMLDocument& document, char const* bytes, std::size_t size, String const& source)
{
    if (document.Parse(bytes, size) != tinyxml2::XML_SUCCESS)
    {
        detail::DebugReport(String("Could not parse layout %1: %2")
                                .Arg(source)
                                .Arg(document.ErrorStr() ? document.ErrorStr() : ""));
        return false;
    }
    return true;
}

/// Reads the file at `path` whole and parses it. False for a missing, empty, oversized or
/// unparsable file; `FileIO` from opening or reading passes to the caller.
bool loadDocumentFromDisk(FilePath const& path, XMLDocument& document)
{
    Util::File file(path);
    if (!file.Exists())
    {
        detail::DebugReport(String("File %1 does not exist").Arg(path.ToString()));
        return false;
    }
    file.Open(Util::File::ModeRead);
    checked_value<unsigned long long> size = file.Size();
    if (!size || *size == 0 || *size > MaxLayoutFileSize)
    {
        detail::DebugReport(String("Layout file %1 is empty or too large").Arg(path.ToString()));
        return false;
    }
    std::vector<char> buffer(static_cast<std::size_t>(*size) + 1, '\0');
    file.ReadBlock(buffer.data(), static_cast<unsigned int>(*size));
    file.Close();
    return parse(document, buffer.data(), static_cast<std::size_t>(*size), path.ToString());
}

void loadMetrics(Window* window, XMLElement const* element)
{
    for (unsigned int i = 0;; ++i)
    {
        String name = String("Metric%1").Arg(i);
        // The text must be there and be a number: an empty text is no metric.
        if (!hasNonEmptyAttribute(element, name.CStr()))
            return;
        checked_value<int> value = attribute(element, name.CStr()).ToInt(10);
        if (!value)
            return;
        window->SetDynamicLayoutMetric(i, *value, true);
    }
}

void loadGeometry(Window* window, XMLElement const* element)
{
    auto read = [element](char const* name, int low)
    { return clampInt(attribute(element, name).ToInt(10).GetOr(0), low, GeometryLimit); };
    window->SetGeometry(read("X", -GeometryLimit), read("Y", -GeometryLimit), read("Width", 0),
                        read("Height", 0));
    window->SetLayoutGeometry(window->GetGeometry());
}

/// A "Layout" attribute: the window's content comes from a layout file of its own.
void loadLayoutAttribute(LoadContext& context, FolderPath const& folder, Window* window,
                         XMLElement const* element)
{
    if (!window || !hasNonEmptyAttribute(element, "Layout"))
        return;
    String name = attribute(element, "Layout");
    String file = detail::LayoutFilePath(window->GetCanvas(), name);
    bool refused = context.nestedLoads >= MaxNestedLayouts ||
                   std::find(context.openFiles.begin(), context.openFiles.end(), file) !=
                       context.openFiles.end();
    if (refused)
    {
        detail::DebugReport(String("Layout %1 is not loaded again inside itself").Arg(name));
    }
    else
    {
        ++context.nestedLoads;
        // A nested layout that fails, even for want of a readable file, leaves the window as
        // its parent's layout placed it.
        try
        {
            loadFromFolderOrResources(context, folder, file, window);
        }
        catch (Util::Exception::FileIO const&)
        {
            detail::DebugReport(String("Could not read layout %1").Arg(file));
        }
    }
    window->SetDynamicLayoutMode(Window::DynamicLayoutOwnFile);
    window->SetLayoutName(name);
}

void loadProperty(Frame* frame, Window* window, XMLElement const* element)
{
    if (!window || std::strcmp(element->Name(), "Property") != 0)
        return;
    String type = attribute(element, "Type");
    String name = attribute(element, "Name");
    if (type.IsEmpty() || name.IsEmpty())
        return;
    Canvas* canvas = canvasOf(frame, window);
    Util::PropertySerializer* serializer = canvas ? canvas->GetPropertySerializer() : nullptr;
    if (!serializer || !serializer->Load(*window, name, type, attribute(element, "Value")))
        detail::DebugReport(String("Unhandled property type \"%1\"").Arg(type));
}

/// The window's name from "Name", or from a text node that comes first inside the element.
String readName(XMLElement const* element)
{
    String name = attribute(element, "Name");
    if (!name.IsEmpty())
        return name;
    XMLNode const* first = element->FirstChild();
    if (first && first->ToText() && first->Value())
        return String(first->Value());
    return String("");
}

Window* findOrCreateWindow(LoadContext& context, Window* parent, XMLElement const* element)
{
    String name = readName(element);
    if (std::strcmp(element->Name(), "Child") == 0)
    {
        if (name.IsEmpty())
            return nullptr;
        Window* found = parent ? parent->FindChildWindow(name)
                               : (context.frame ? context.frame->FindChildWindow(name) : nullptr);
        if (!found)
            detail::DebugReport(String("Child %1 not found").Arg(name));
        return found;
    }

    String type = attribute(element, "Type");
    if (type.IsEmpty())
        return nullptr;
    WindowFactory* factory = GetWindowFactory(canvasOf(context.frame, parent));
    Window* created = factory ? factory->Create(type, context.frame, parent, name) : nullptr;
    if (!created)
    {
        detail::DebugReport(String("Could not create child %1 of type %2").Arg(name).Arg(type));
        return nullptr;
    }
    created->SetLayoutCreated(true);
    created->SetDynamicLayoutMode(Window::DynamicLayoutSaved);
    return created;
}

bool loadWindowTree(LoadContext& context, FolderPath const& folder, Window* parent,
                    XMLElement const* element)
{
    if (context.windowDepth >= MaxWindowDepth)
    {
        detail::DebugReport(String("Layout nests windows deeper than %1").Arg(MaxWindowDepth));
        return false;
    }
    Window* window = findOrCreateWindow(context, parent, element);
    if (!window)
        return false;
    struct Level
    {
        unsigned int& depth;
        explicit Level(unsigned int& d) : depth(d) { ++depth; }
        ~Level() { --depth; }
    } level(context.windowDepth);

    if (hasNonEmptyAttribute(element, "X"))
    {
        loadGeometry(window, element);
        loadLayoutAttribute(context, folder, window, element);
    }
    loadMetrics(window, element);

    // Properties wait until every child exists, since setting one may look at the children.
    std::vector<XMLElement const*> properties;
    for (XMLElement const* child = element->FirstChildElement(); child;
         child = child->NextSiblingElement())
    {
        char const* name = child->Name();
        if (std::strcmp(name, "Child") == 0 || std::strcmp(name, "NewChild") == 0)
            loadWindowTree(context, folder, window, child);
        else if (std::strcmp(name, "Property") == 0)
            properties.push_back(child);
    }
    for (XMLElement const* property : properties)
        loadProperty(context.frame, window, property);
    return true;
}

bool loadLayoutFromXML(LoadContext& context, FolderPath const& folder, XMLDocument const& document,
                       Window* window)
{
    XMLElement const* root = document.FirstChildElement();
    if (!root)
        return false;
    if (std::strcmp(root->Name(), LayoutDocumentType) != 0)
    {
        detail::DebugReport(String("Invalid document type: %1").Arg(root->Name()));
        return false;
    }
    if (window)
    {
        loadMetrics(window, root);
        if (hasNonEmptyAttribute(root, "X"))
            loadGeometry(window, root);
    }
    loadLayoutAttribute(context, folder, window, root);

    for (XMLNode const* node = root->FirstChild(); node; node = node->NextSibling())
    {
        XMLElement const* element = node->ToElement();
        if (!element)
            continue;
        char const* name = element->Name();
        if (std::strcmp(name, "Child") == 0 || std::strcmp(name, "NewChild") == 0)
            loadWindowTree(context, folder, window, element);
        else if (std::strcmp(name, "Property") == 0)
            loadProperty(context.frame, window, element);
        else
            detail::DebugReport(String("Unknown element \"%1\"").Arg(name));
    }
    return true;
}

/// Loads a parsed document with `file` marked as being loaded for the time of it.
bool loadDocument(LoadContext& context, FolderPath const& folder, String const& file,
                  XMLDocument const& document, Window* window)
{
    context.openFiles.push_back(file);
    bool loaded = loadLayoutFromXML(context, folder, document, window);
    context.openFiles.pop_back();
    return loaded;
}

/// The disk file `folder` + `file` when the folder is given, otherwise the resource `file`.
bool loadFromFolderOrResources(LoadContext& context, FolderPath const& folder, String const& file,
                               Window* window)
{
    if (!folder.IsEmpty())
    {
        XMLDocument document;
        if (loadDocumentFromDisk(folder + file, document))
            return loadDocument(context, folder, file, document, window);
    }

    unsigned char const* data = nullptr;
    unsigned int size = 0;
    if (!Util::ResourceManager::Get().GetFile(file, data, size) || !data || size == 0)
        return false;
    // The resource's bytes are not terminated: the parser gets its own terminated copy.
    std::vector<char> buffer(data, data + size);
    buffer.push_back('\0');
    XMLDocument document;
    if (!parse(document, buffer.data(), size, file))
        return false;
    return loadDocument(context, folder, file, document, window);
}

// ============================================================================================
// 3. Saving
// ============================================================================================

bool isDialog(Window const* window)
{
    return dynamic_cast<Dialog::Base const*>(window) != nullptr;
}

void saveGeometry(Window const* window, XMLElement* element)
{
    Rect const& r = window->GetGeometry();
    element->SetAttribute("X", String::Number(r.left).CStr());
    element->SetAttribute("Y", String::Number(r.top).CStr());
    element->SetAttribute("Width", String::Number(r.Width()).CStr());
    element->SetAttribute("Height", String::Number(r.Height()).CStr());
}

void saveProperties(Window const* window, XMLElement* element)
{
    Canvas* canvas = window->GetCanvas();
    Util::PropertySerializer* serializer = canvas ? canvas->GetPropertySerializer() : nullptr;
    if (!serializer)
        return;
    std::vector<Util::PropertySerializer::PropertySerialization> entries;
    serializer->SaveAll(*window, entries);
    for (auto const& entry : entries)
    {
        if (entry.name.IsEmpty() || entry.type.IsEmpty())
            continue;
        XMLElement* property = element->InsertNewChildElement("Property");
        property->SetAttribute("Name", entry.name.CStr());
        property->SetAttribute("Type", entry.type.CStr());
        property->SetAttribute("Value", entry.value.IsNull() ? "" : entry.value.CStr());
    }
}

/// Children that a saved file may hold: no dialogs, nothing that is never saved.
bool isSavedChild(Window const* window)
{
    return window && !isDialog(window) &&
           window->GetDynamicLayoutMode() != Window::DynamicLayoutNever;
}

/// Everything below `window` that belongs in its parent's file, or (step 5) in a file of its own.
void saveWindowContent(FolderPath const& folder, Window* window, XMLElement* element);

void saveWindowTree(FolderPath const& folder, Window* window, XMLElement* parentElement,
                    bool direct)
{
    Window::DynamicLayout mode = window->GetDynamicLayoutMode();
    XMLElement* element = nullptr;
    if (!window->IsLayoutCreated() && mode > Window::DynamicLayoutOwnFile && !direct)
    {
        // Built by code and nested: only a name, so that saved windows inside can be found.
        element = parentElement->InsertNewChildElement("Child");
        element->SetAttribute("Name", window->GetName().CStr());
        saveWindowContent(folder, window, element);
    }
    else
    {
        element =
            parentElement->InsertNewChildElement(window->IsLayoutCreated() ? "NewChild" : "Child");
        element->SetAttribute("Name", window->GetName().CStr());
        bool registered = true;
        if (window->IsLayoutCreated())
        {
            WindowFactory* factory = GetWindowFactory(window->GetCanvas());
            checked_value<String> type =
                factory ? factory->GetTypeName(window) : checked_value<String>();
            if (type)
            {
                element->SetAttribute("Type", type.Get().CStr());
            }
            else
            {
                detail::DebugReport(
                    String("Child %1 did not have its type registered with the WindowFactory")
                        .Arg(window->GetName()));
                registered = false;
            }
        }
        if (registered)
        {
            saveGeometry(window, element);
            saveProperties(window, element);
            saveWindowContent(folder, window, element);
        }
    }

    // An element that neither places its window nor holds anything leaves no trace.
    char const* x = element->Attribute("X");
    if ((!x || !*x) && !element->FirstChildElement())
        parentElement->DeleteChild(element);
}

void saveWindowContent(FolderPath const& folder, Window* window, XMLElement* element)
{
    Window::DynamicLayout mode = window->GetDynamicLayoutMode();
    if (window->GetLayoutName().IsEmpty())
    {
        if (mode == Window::DynamicLayoutOwnFile || mode == Window::DynamicLayoutNever)
            return;
        // A copy: saving runs no window code that could change the list, but stay safe.
        std::vector<Window*> children = window->child_windows();
        for (Window* child : children)
        {
            if (isSavedChild(child))
                saveWindowTree(folder, child, element, false);
        }
        return;
    }
    String file = detail::LayoutFilePath(window->GetCanvas(), window->GetLayoutName());
    SaveLayout(folder, file, window->GetFrame(), window, false);
    element->SetAttribute("Layout", window->GetLayoutName().CStr());
}

} // namespace

// ============================================================================================
// Public entry points
// ============================================================================================

bool LoadLayout(FolderPath const& folder, String const& file, Frame* frame, Window* window)
{
    LoadContext context{frame, {}, 0};
    if (!folder.IsEmpty())
    {
        // Found directly in the folder: applied, but OnLayoutLoaded is not called.
        XMLDocument document;
        if (loadDocumentFromDisk(folder + file, document) &&
            loadDocument(context, folder, file, document, window))
            return true;
    }
    if (!loadFromFolderOrResources(context, folder, file, window))
        return false;
    if (window)
        window->OnLayoutLoaded();
    return true;
}

bool LoadLayout(String const& path, Frame* frame, Window* window)
{
    LoadContext context{frame, {}, 0};
    XMLDocument document;
    if (!loadDocumentFromDisk(FilePath(path), document) ||
        !loadDocument(context, FolderPath(), path, document, window))
        return false;
    if (window)
        window->OnLayoutLoaded();
    return true;
}

bool SaveLayout(FolderPath const& folder, String const& file, Frame* frame, Window* window,
                bool saveRootGeometry)
{
    XMLDocument document;
    document.InsertEndChild(document.NewDeclaration("xml version=\"1.0\" standalone=\"yes\""));
    XMLElement* root = document.NewElement(LayoutDocumentType);
    document.InsertEndChild(root);

    if (window && saveRootGeometry &&
        window->GetDynamicLayoutMode() != Window::DynamicLayoutOwnFile)
    {
        saveGeometry(window, root);
        saveProperties(window, root);
    }

    std::vector<Window*> roots;
    if (window)
        roots = window->child_windows();
    else if (frame)
        roots = frame->GetTopLevelWindows();
    for (Window* entry : roots)
    {
        if (isSavedChild(entry))
            saveWindowTree(folder, entry, root, true);
    }

    String path = (folder + file).ToString();
    if (document.SaveFile(path.CStr()) != tinyxml2::XML_SUCCESS)
    {
        detail::DebugReport(String("Can't save XML file %1").Arg(path));
        return false;
    }
    return true;
}

} // namespace UI
