#ifndef ZUTARNEX_SYSTEM_QVPI_PLUGINLOADER_H
#define ZUTARNEX_SYSTEM_QVPI_PLUGINLOADER_H

#include "system/QVPI_Plugin.h"
#include "zutarnex/export.h"

#include <boost/shared_ptr.hpp>

namespace Quillon::System {

/// One link of a chain of plug-in loaders. At the root stands the system plug-in loader, the one that opens modules.
///
/// Layout:    virtual table, parent; slots: initPlugin, findPlugin, destructor (tests/abi/).
/// Ownership: shares its parent. A plug-in is destroyed (slot 5 of its table) when its last owner goes; the module
///            that it came from stays open until the system plug-in loader is destroyed, at the library's unload.
/// Threads:   nothing is locked; plug-ins are loaded from one thread at a time.
class ZUTARNEX_API QVPI_PluginLoader {
public:
    /// The process's root loader, made on first use. It is let go at the library's unload; empty after that.
    ///
    /// Throws: IllegalStateException when it is called while the loader is being made, std::bad_alloc.
    static boost::shared_ptr<QVPI_PluginLoader> getSystemPluginLoader();
    static void initSystemPluginLoader(); ///< makes it, unless it is there

    QVPI_PluginLoader(); ///< under the system plug-in loader
    explicit QVPI_PluginLoader(boost::shared_ptr<QVPI_PluginLoader> parent); ///< an empty parent: a root

    boost::shared_ptr<QVPI_PluginLoader> getParent() const;

    /// The plug-in `name`: what this loader has cached, else what its ancestors can supply, each asked in the same
    /// way, else a new one that this loader makes.
    ///
    /// `args`: given to the plug-in's entry, as a rule a QVPI_PluginInitArgs. `keep`: the plug-in lives as long as
    /// its loader even when nobody holds it.
    ///
    /// Deliberate: a cached plug-in is returned as it is, `args` and `keep` are ignored then
    /// (tests/system/PluginLoaderTest.cpp, CachedPluginIgnoresArguments).
    /// Throws: PluginNotFoundException when nobody can supply it (also for a null `name`, and for one whose file
    ///         name is longer than 4,095 bytes); CataloguedException when the module has no entry, the entry fails
    ///         or leaves no record, or the record's major version is not 1; OutOfMemoryException, std::bad_alloc;
    ///         whatever initPlugin() and findPlugin() of a derived class throw. Nothing is cached then.
    boost::shared_ptr<QVPI_Plugin_> loadPlugin(const char* name, void* args, bool keep);

    // What loadPlugin() is made of; callers go through that.

    /// Makes the plug-in. The base cannot make any.
    ///
    /// Deliberate: an exception of any other kind than the one below ends the process through the host's
    /// `unexpected`, in the base (tests/system/PluginLoaderTest.cpp, BaseInitPluginLetsOnlyPluginNotFoundEscape).
    /// Throws: PluginNotFoundException.
    virtual boost::shared_ptr<QVPI_Plugin_> initPlugin(const char* name, void* args, bool keep);

    /// The plug-in that this loader has cached, or an empty pointer, which is what the base's body returns.
    virtual boost::shared_ptr<QVPI_Plugin_> findPlugin(const char* name) const = 0;

    virtual ~QVPI_PluginLoader(); // its slots are the last ones

private:
    struct Unload;

    // The system plug-in loader, whether it is installed, and what lets go of it.
    [[gnu::visibility("hidden")]] static boost::shared_ptr<QVPI_PluginLoader> spl;
    [[gnu::visibility("hidden")]] static bool splSet;
    [[gnu::visibility("hidden")]] static Unload unload;

    boost::shared_ptr<QVPI_PluginLoader> parent_;
};

} // namespace Quillon::System

#endif
