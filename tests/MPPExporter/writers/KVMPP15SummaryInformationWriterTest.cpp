#include "MPPExporter/writers/KVMPP15SummaryInformationWriter.h"

#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/writers/KVMPP15ProjectWriter.h"
#include "WriterTestSupport.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

// Both property sets of a written file as olefile reads them: one line per set, "id=value" by id,
// texts decoded in the set's code page (a 16-bit word that olefile reads signed).
std::string summarySets(const fs::path& file) {
    const std::string script = "import sys, olefile\n"
                               "o = olefile.OleFileIO(sys.argv[1])\n"
                               "for name in ('\\x05SummaryInformation', '\\x05DocumentSummaryInformation'):\n"
                               "    p = o.getproperties(name)\n"
                               "    p[1] &= 0xFFFF\n"
                               "    cp = 'utf-8' if p[1] == 65001 else 'cp%d' % p[1]\n"
                               "    print(' '.join('%d=%s' % (k, v.decode(cp) if isinstance(v, bytes) else v)"
                               " for k, v in sorted(p.items())))\n";
    return testsupport::commandOutput("/usr/bin/python3 -c " + testsupport::shellQuoted(script) + " " +
                                      testsupport::shellQuoted(file.string()) + " 2>&1");
}

std::string exportedSets(const KVMPPSummaryInformation& summary) {
    testsupport::TempDir dir;
    KVMPPProject project;
    project.summaryInfo = summary;
    const fs::path output = dir.path() / "plan.mpp";
    if (!KVMPP15ProjectWriter::writeProject(project, output.string(),
                                            writertest::shippedTemplate().string())) {
        return "not written";
    }
    return summarySets(output);
}

TEST(KVMPP15SummaryInformationWriter, TheSetsHoldTheProjectsSummaryForOlefile) {
    KVMPPSummaryInformation summary;
    EXPECT_EQ(exportedSets(summary), "1=1251 9=1 18=Microsoft MPPProject 19=0\n1=1251\n");

    summary.title = "Quarterly plan";
    summary.author = "Ann";
    summary.creator = "Bo";
    summary.company = "ACME";
    summary.manager = "Cy";
    EXPECT_EQ(exportedSets(summary), "1=1251 2=Quarterly plan 4=Ann 8=Bo 9=1 18=Microsoft MPPProject 19=0\n"
                                     "1=1251 14=Cy 15=ACME\n");

    // A title beyond ASCII keeps its characters in UTF-8 rather than turning into question marks.
    summary.title = "Plán Ω";
    summary.company = "Café";
    EXPECT_EQ(exportedSets(summary), "1=65001 2=Plán Ω 4=Ann 8=Bo 9=1 18=Microsoft MPPProject 19=0\n"
                                     "1=65001 14=Cy 15=Café\n");
}

} // namespace
