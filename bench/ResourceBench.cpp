// Resource lookups and loading.
//
//   BM_GetFilePacked      GetFile of a packed resource among 2,000: one map search, no copy
//   BM_MapFindReference   the bare std::map<String, ...>::find over the same names (the floor)
//   BM_CopyReference      copying the same 4 KiB resource instead (what a copy would cost)
//   BM_InitFiftyMegabytes ResourceManager::Init of a 50 MB packed file
//   BM_ReadReference      plain read(2) of the same file into a buffer (disk-read speed)

#include "TvBase/Util/ResourceManager.h"
#include "TvBase/Util/detail/ResourceDirectory.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <unistd.h>

namespace
{

/// A temp folder holding "Resources/resources.resembed", made once per process.
class PackedFolder
{
public:
    PackedFolder(unsigned int count, std::size_t eachSize)
    {
        char pattern[] = "/tmp/tv_resource_bench_XXXXXX";
        root = ::mkdtemp(pattern);
        std::filesystem::create_directories(root + "/Resources");
        std::vector<String> names;
        std::vector<std::vector<unsigned char>> contents;
        for (unsigned int i = 0; i < count; ++i)
        {
            names.push_back(String("UI/png/image%1.png").Arg(i));
            contents.emplace_back(eachSize, static_cast<unsigned char>(i));
        }
        std::vector<unsigned char> const bytes = Util::detail::BuildResourceFile(names, contents);
        int const fd = ::open(File().c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        std::size_t done = 0;
        while (done < bytes.size())
        {
            ssize_t const put = ::write(fd, bytes.data() + done, bytes.size() - done);
            if (put <= 0)
                break;
            done += static_cast<std::size_t>(put);
        }
        ::close(fd);
        size = bytes.size();
    }
    ~PackedFolder() { std::filesystem::remove_all(root); }

    std::string const& Root() const { return root; }
    std::string File() const { return root + "/Resources/resources.resembed"; }
    std::size_t Size() const { return size; }

private:
    std::string root;
    std::size_t size = 0;
};

PackedFolder& smallSet()
{
    static PackedFolder folder(2000, 4096);
    return folder;
}

PackedFolder& fiftyMegabytes()
{
    static PackedFolder folder(50, 1000000);
    return folder;
}

void BM_GetFilePacked(benchmark::State& state)
{
    Util::ResourceManager resources;
    resources.Init(FolderPath(smallSet().Root().c_str()));
    String const name("UI/png/image1234.png");
    for (auto _ : state)
    {
        unsigned char const* data = nullptr;
        unsigned int size = 0;
        benchmark::DoNotOptimize(resources.GetFile(name, data, size));
        benchmark::DoNotOptimize(data);
    }
}
BENCHMARK(BM_GetFilePacked);

void BM_MapFindReference(benchmark::State& state)
{
    std::map<String, std::pair<unsigned int, unsigned int>> entries;
    for (unsigned int i = 0; i < 2000; ++i)
        entries[String("UI/png/image%1.png").Arg(i)] = {i, 4096};
    String const name("UI/png/image1234.png");
    for (auto _ : state)
        benchmark::DoNotOptimize(entries.find(name));
}
BENCHMARK(BM_MapFindReference);

void BM_CopyReference(benchmark::State& state)
{
    Util::ResourceManager resources;
    resources.Init(FolderPath(smallSet().Root().c_str()));
    array_ref<unsigned char const> const bytes = resources.GetFile("UI/png/image1234.png");
    for (auto _ : state)
    {
        std::vector<unsigned char> copy(bytes.begin(), bytes.end());
        benchmark::DoNotOptimize(copy.data());
    }
}
BENCHMARK(BM_CopyReference);

void BM_InitFiftyMegabytes(benchmark::State& state)
{
    PackedFolder& folder = fiftyMegabytes();
    for (auto _ : state)
    {
        Util::ResourceManager resources;
        benchmark::DoNotOptimize(resources.Init(FolderPath(folder.Root().c_str())));
    }
    state.SetBytesProcessed(static_cast<long long>(state.iterations()) *
                            static_cast<long long>(folder.Size()));
}
BENCHMARK(BM_InitFiftyMegabytes)->Unit(benchmark::kMillisecond);

void BM_ReadReference(benchmark::State& state)
{
    PackedFolder& folder = fiftyMegabytes();
    for (auto _ : state)
    {
        std::unique_ptr<unsigned char[]> buffer(new unsigned char[folder.Size()]);
        int const fd = ::open(folder.File().c_str(), O_RDONLY);
        std::size_t done = 0;
        while (done < folder.Size())
        {
            ssize_t const got = ::read(fd, buffer.get() + done, folder.Size() - done);
            if (got <= 0)
                break;
            done += static_cast<std::size_t>(got);
        }
        ::close(fd);
        benchmark::DoNotOptimize(buffer.get());
    }
    state.SetBytesProcessed(static_cast<long long>(state.iterations()) *
                            static_cast<long long>(folder.Size()));
}
BENCHMARK(BM_ReadReference)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
