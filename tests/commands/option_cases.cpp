#include "option_cases.h"

namespace option_test {

const char *const text_of_cases = R"cases(
# ---- project -----------------------------------------------------------------------------------------------------

[]
run: project.open
fails
  file=in/project.txt -> panel
[library]
run: project.show
[library]
run: project.close
[]
run: folder.set folder=here
[library]
run: parameters.set
after: net.create
  tolerance=5 -> figures
  gel-length=70000 -> panel
  n-bands=3000 -> figures
  preset=5 -> figures
  max-clones=1000 -> parts
[]
run: parameters.set
after: pvalue.score n1=100 n2=90 k=40 metric=Soderlund_1997
  tolerance-index=0 -> lines
# kept, but nothing reads it
  same-metric-in-order=yes -> settings
[library net]
run: parameters.set
after: net.subnet out=s.ORBns
  use-net=no -> s.ORBns
[library net]
before: metric.set metric=k2mn cutoff=20
run: parameters.set
after: net.remetric
  same-metric=no -> figures
[]
run: pvalue.load folder=in/tables
[library]
run: metric.by_library
after: net.create
[library]
run: parameters.by_library
after: net.create
  preset=5 -> figures
  tolerance=5 -> figures
  gel-length=70000 -> panel
  n-bands=3000 -> figures
  metric=k2mn -> figures
  cutoff=20 -> figures
  library-stays=yes -> figures
[library]
run: metric.set
after: net.create
after: net.save out=n.ORBns
  metric=k2mn -> figures
  cutoff=20 -> figures
[library net]
run: metric.set
after: order.list list=in/list.txt out=o ordering-steps=1000
after: draw.marked list=in/list.txt out=d
  burying=0.5 -> notes
  several=yes -> folder
[library net]
before: markers.load file=in/markers_of_all.txt
run: metric.set
after: net.remetric
  use-markers=no -> figures
[]
run: formats.set
# kept, but nothing reads it
  file-format=1 -> settings
[]
before: library.load file=in/plates name-format-in=3 name-format-out=0
before: formats.set name-format-in=7
run: formats.set
after: list.sort list=in/list.txt
fails
  name-format-in=3 -> sorted_list.txt
[]
before: library.load file=in/plates name-format-in=3 name-format-out=0
before: formats.set name-format-out=7
run: formats.set
after: list.sort list=in/list.txt
fails
  name-format-out=0 -> sorted_list.txt
[library net]
run: options.set
after: table.pairs list=in/lists/a.txt out=t
  table-format=2 -> t/All_dist_a.txt
[library net]
before: options.set table-format=4
run: options.set
after: table.pairs list=in/lists/a.txt out=t
  fast-fpc=no -> t/All_dist_a.txt
[library net]
before: metric.set cutoff=2
run: options.set
after: order.list list=in/scattered.txt out=o ordering-steps=1000
  net-in-ordering=yes -> o/order_control_scattered_Sulston_1988_Cf2.0_p0.90.txt
[small]
run: options.set
after: contigs.assemble no-drawings=yes no-ordering=yes no-pair-tables=yes
# the same clusters in another way
  fast-clustering=no -> panels
[library net]
run: options.set
after: fpc.read file=in/assembly.fpc print=no
  singletones=yes -> questions
[]
run: program.exit

# ---- library -----------------------------------------------------------------------------------------------------

[]
run: library.load
fails
  file=in/plates -> figures
[]
run: library.load file=in/plates
after: net.create
  capacity=10 -> notes
  name-format-in=1 -> figures
  tolerance=5 -> figures
  tolerance-index=0 -> figures
  gel-length=70000 -> panel
  n-bands=3000 -> figures
  preset=5 -> figures
[]
run: library.load file=in/plates/EC002.sizes
after: library.names
  plain-text=yes -> figures
[]
run: library.load file=in/plates name-format-in=3
after: library.names
  name-format-out=0 -> DB.txt
[]
run: library.load
answer: Open any file with bands = in/plates/EC001.sizes
answer: Open single file = in/plates/EC001.sizes
answer: Save lists of bands = kept.ORBdb
  source=sizes -> figures
  keep=yes -> kept.ORBdb
[library]
run: library.save
fails
  out=x.ORBdb -> x.ORBdb
[library]
before: library.save out=x.ORBdb
run: library.save out=x.ORBdb
fails
  force=yes -> status
[library]
run: library.rename
fails
  file=in/names.txt -> figures
[library]
run: library.rename file=in/names.txt
  out=o -> folder
  save=new.ORBdb -> new.ORBdb
[library]
before: library.save out=x.ORBdb
run: library.rename file=in/names.txt save=x.ORBdb
fails
  force=yes -> x.ORBdb
[library]
run: library.names
answer: Need number of bands = no
  out=o -> folder
  bands=yes -> DB.txt
[library]
run: library.find_names
answer: Need to exclude = yes
answer: Open file with clone names to exclude = in/exclude.txt
fails
  file=in/columns.txt -> status
[library]
run: library.find_names file=in/columns.txt
answer: Need to exclude = yes
answer: Open file with clone names to exclude = in/exclude.txt
  exclude=in/list.txt -> column_with_clone_names.txt
  all=yes -> column_with_clone_names.txt
  out=o -> folder
[]
run: library.test_sizes
fails
  file=in/plates/EC001.sizes -> testRes.txt
[]
run: library.test_sizes file=in/plates/EC001.sizes
  out=o -> folder
[library]
run: library.repeats
answer: Repeats = yes
fails
  file=in/plates -> selected_clones_plates.txt
[library]
run: library.repeats file=in/plates
  out=o.sizes -> o.sizes
  out=p.sizes -> files
  make-file=yes -> folder
[library]
run: library.repeats file=in/plates out=o.sizes
  frequency=0.1 -> o.sizes
[library]
before: library.save out=o.sizes
run: library.repeats file=in/plates out=o.sizes
fails
  force=yes -> o.sizes
[library]
run: library.kill_bands
[library]
run: clones_in_lists.load
after: clones_in_lists.save
  file=in/addresses.txt -> clone_in_lists.txt
[library]
run: clones_in_lists.add_file
after: clones_in_lists.save
  file=in/list.txt -> clone_in_lists.txt
[library]
run: clones_in_lists.add_folder
after: clones_in_lists.save
  file=in/lists/a.txt -> clone_in_lists.txt
[library]
before: clones_in_lists.add_file file=in/list.txt
run: clones_in_lists.clear
after: clones_in_lists.save
[library]
before: clones_in_lists.add_file file=in/list.txt
run: clones_in_lists.save
  out=o -> folder

# ---- markers -----------------------------------------------------------------------------------------------------

[library]
run: markers.load
fails
  file=in/markers.txt -> notes
[library]
run: markers.load file=in/markers.txt
after: markers.save out=m.txt
  positions=in/positions.txt -> m.txt
[library]
run: markers.load file=in/one_column.txt
after: markers.save out=m.txt
  form=clones -> m.txt
[library markers]
run: markers.positions
after: markers.save out=m.txt
fails
  file=in/positions.txt -> m.txt
[library markers]
run: markers.save out=m.txt
  form=clones -> m.txt
[library markers]
before: markers.save out=m.txt
run: markers.save form=clones out=m.txt
fails
  force=yes -> m.txt
[library markers]
run: markers.print list=in/list.txt out=t.txt
[library markers]
before: markers.save out=t.txt
run: markers.print list=in/list.txt out=t.txt
fails
  force=yes -> t.txt

# ---- lists -------------------------------------------------------------------------------------------------------

[library]
run: list.sort
fails
  list=in/list.txt -> sorted_list.txt
[library]
run: list.sort list=in/list.txt
  out=o.txt -> folder
[library]
before: list.sort list=in/list.txt out=o.txt
run: list.sort list=in/other.txt out=o.txt
fails
  force=yes -> o.txt
[library]
run: list.intersect
fails
answer: Open second = in/other.txt
  list=in/list.txt -> intersection_list_other.txt
[library]
run: list.intersect
fails
answer: Open first = in/list.txt
  list2=in/other.txt -> intersection_list_other.txt
[library]
run: list.intersect list=in/list.txt list2=in/other.txt
  out=o.txt -> folder
[library]
before: list.sort list=in/list.txt out=o.txt
run: list.intersect list=in/list.txt list2=in/other.txt out=o.txt
fails
  force=yes -> o.txt
[library]
run: list.minus
fails
answer: Open second = in/other.txt
  list=in/list.txt -> minus_list_other.txt
[library]
run: list.minus
fails
answer: Open first = in/list.txt
  list2=in/other.txt -> minus_list_other.txt
[library]
run: list.minus list=in/list.txt list2=in/other.txt
  out=o.txt -> folder
[library]
before: list.sort list=in/list.txt out=o.txt
run: list.minus list=in/list.txt list2=in/other.txt out=o.txt
fails
  force=yes -> o.txt
[library]
run: list.unite
fails
answer: Open second = in/other.txt
  list=in/list.txt -> plus_list_other.txt
[library]
run: list.unite
fails
answer: Open first = in/lists/a.txt
  list2=in/other.txt -> plus_a_other.txt
[library]
run: list.unite list=in/lists/a.txt list2=in/other.txt
  out=o.txt -> folder
[library]
before: list.sort list=in/list.txt out=o.txt
run: list.unite list=in/lists/a.txt list2=in/other.txt out=o.txt
fails
  force=yes -> o.txt
[]
run: list.format
fails
  list=in/list.txt -> new_list.txt
[]
run: list.format list=in/list.txt
  out=o.txt -> folder
[]
run: list.format list=in/list.txt out=o.txt name-format-in=3
  name-format-in=1 -> o.txt
  name-format-out=0 -> o.txt
[library]
before: list.sort list=in/list.txt out=o.txt
run: list.format list=in/other.txt out=o.txt
fails
  force=yes -> o.txt
[library]
run: list.select
fails
answer: Open file with bands = in/plates/EC001.sizes
  list=in/list.txt -> selected_clones_EC001.txt
[library]
run: list.select list=in/list.txt
fails
  fingerprints=in/plates -> selected_clones_plates.txt
[library]
run: list.select list=in/list.txt fingerprints=in/plates
  out=o.sizes -> folder
[library]
run: list.select list=in/list.txt fingerprints=in/plates out=o.sizes
  frequency=0.1 -> o.sizes
[library]
before: list.sort list=in/list.txt out=o.sizes
run: list.select list=in/list.txt fingerprints=in/plates out=o.sizes
fails
  force=yes -> o.sizes

# ---- nets --------------------------------------------------------------------------------------------------------

[library]
run: net.create
[library]
run: net.create_text
fails
  out=n.txt -> n.txt
[library]
run: net.create_text out=n.txt
  start=400 -> n.txt
  parts=yes -> folder
  load=yes -> figures
  preprocess=no -> folder
  max-bands=40 -> metric_table.txt
[library]
before: list.sort list=in/list.txt out=n.txt
run: net.create_text out=n.txt
fails
  force=yes -> n.txt
[library]
run: net.load
fails
  file=in/net.ORBns -> figures
[library]
run: net.load_text
fails
[library]
run: net.load_text out=n.ORBns
fails
  file=in/net.txt -> n.ORBns
[library]
run: net.load_text file=in/net.txt
  out=n.ORBns -> n.ORBns
[library]
before: list.sort list=in/list.txt out=n.ORBns
run: net.load_text file=in/net.txt out=n.ORBns
fails
  force=yes -> n.ORBns
[library]
run: net.load_text file=in/parts/net_1.txt out=n.ORBns
fails
  folder=yes -> figures
[library]
run: net.load_text file=in/net.txt out=n.ORBns
answer: Input maximal number = 5
  reduce=yes -> figures
[library net]
run: net.save out=n.ORBns
[library net]
before: list.sort list=in/list.txt out=n.ORBns
run: net.save out=n.ORBns
fails
  force=yes -> n.ORBns
[library net]
run: net.save_text out=n.txt
[library net]
before: list.sort list=in/list.txt out=n.txt
run: net.save_text out=n.txt
fails
  force=yes -> n.txt
[library net]
before: markers.load file=in/markers_of_all.txt
before: metric.set use-markers=no
run: net.remetric
  with-markers=yes -> figures
[library net]
run: net.subnet
fails
  out=n.ORBns -> n.ORBns
[library net]
before: list.sort list=in/list.txt out=n.ORBns
run: net.subnet out=n.ORBns
fails
  force=yes -> n.ORBns
[library net]
run: net.disconnect list=in/list.txt
fails
  out=n.ORBns -> n.ORBns
[library net]
before: list.sort list=in/list.txt out=n.ORBns
run: net.disconnect list=in/list.txt out=n.ORBns
fails
  force=yes -> n.ORBns
[library net]
run: net.unite_clones
answer: Open = in/other.txt
  list=in/list.txt -> net_SuperClone.net
[library net]
run: net.unite_clones list=in/list.txt
fails
  united=in/lists/a.txt -> net_SuperClone.net
[library net]
run: net.unite_clones list=in/list.txt united=in/lists/a.txt
  out=o -> folder
[library net contigs]
run: net.within_clusters
  out=o -> folder
  max-size=60 -> figures
[library raw-net]
before: contigs.load_folder folder=in/lists
run: net.connections_out
  out=o -> folder
  connection-cutoff=40 -> figures
[library net]
run: net.of_clusters
fails
  folder=in/lists -> figures
[library net]
run: net.of_clusters folder=in/lists
  out=o -> folder
  caption=c -> folder
  min-size=21 -> folder
[library net]
run: net.ranks
answer: Open = in/other.txt
  list=in/list.txt -> Consec_dist_MTP_new.txt
[library net]
run: net.ranks list=in/list.txt
fails
  interesting=in/other.txt -> ranks_of_interesting_clones.txt
[library net]
run: net.ranks list=in/list.txt interesting=in/other.txt
  out=o -> folder
[library net]
run: net.grow list=in/lists/a.txt
  out=o -> folder
  rank=2 -> figures
  max-rank=0 -> result_clones.txt
  without-net=yes -> figures
  overlap-cutoff=40 -> figures
[library net]
run: net.grow list=in/lists/a.txt without-net=yes
  candidates=in/list.txt -> figures

[library net contigs]
run: net.grow list=in/lists/a.txt
  compare=yes -> folder

# ---- revision ----------------------------------------------------------------------------------------------------

[library raw-net]
run: net.revise
fails
  out=n.ORBns -> n.ORBns
[library raw-net]
before: list.sort list=in/list.txt out=n.ORBns
run: net.revise out=n.ORBns
fails
  force=yes -> n.ORBns
[library raw-net]
run: net.revise out=n.ORBns
  rank=2 -> figures
  ask-rank=yes -> questions
  additional-cutoff=40 -> figures
  no-overlaps=yes -> folder
  no-clones=yes -> figures
  clone-test=yes -> folder
[library raw-net]
run: net.ladder
  out=o -> folder
  steps=1 -> folder
  min-cutoff=30 -> folder
  additional-cutoff=60 -> net_type_noQQ_22.00.txt
  step=10 -> folder
  rank=2 -> net_type_noQQ_22.00.txt
[library raw-net]
run: net.contamination
  out=o -> folder
  wells-cutoff=40 -> figures
  wells=1 -> figures
[library net]
run: net.supercontigs
fails
  nets=in/supercontigs -> figures
[library net]
run: net.supercontigs nets=in/supercontigs
  out=n.ORBns -> n.ORBns
[library net]
before: list.sort list=in/list.txt out=n.ORBns
run: net.supercontigs nets=in/supercontigs out=n.ORBns
fails
  force=yes -> n.ORBns
[library net]
before: contigs.load_folder folder=in/lists
run: net.supercontigs nets=in/supercontigs out=n.ORBns
  recluster=yes -> figures
[library raw-net]
run: net.characteristics clone=EC001D05
  rank=2 -> figures

# Orders are sought by a number of steps where two runs are compared: seconds go further on a fast machine.
# ---- contigs -----------------------------------------------------------------------------------------------------

[small new-net]
run: contigs.assemble
[small new-net]
run: contigs.assemble ordering-steps=1000
  out=o -> folder
  continue=o -> folder
  no-ordering=yes -> folder
  no-pair-tables=yes -> folder
  from-net-only=yes -> *All_dist_cl_1.txt
  no-drawings=yes -> folder
  drawing-format=graphml -> folder
  drawing-names=no -> *.net
  drawing-numbers=yes -> *.net
  drawing-bands=no -> *.net
  drawing-burial=no -> *.net
  drawing-relations=yes -> *.net
  drawing-cutoffs=yes -> folder
  drawing-colours=no -> *.net
  drawing-scores=no -> *.net
  jackknife=3 -> *Cf15.0_p0.90.txt
[library raw-net]
run: contigs.assemble no-ordering=yes no-pair-tables=yes no-drawings=yes
  max-clones=50 -> figures
  method=layout -> figures
  min-size=50 -> findings
  browse=yes -> folder
  bp-per-band=2000 -> folder
  clone-length=140000 -> folder
  genome-length=5000000 -> folder
  max-width=6 -> figures
  step=10 -> figures
  steps=2 -> figures
[library net]
run: contigs.assemble no-pair-tables=yes no-drawings=yes ordering-seconds=0
  ordering-seconds=1 -> *Cf15.0_p0.90.txt
  ordering-steps=100000 -> *Cf15.0_p0.90.txt
[small new-net]
run: contigs.assemble ordering-steps=1000 jackknife=3
  jackknife-alpha=0.5 -> *Cf15.0_p0.90.txt
[library net contigs]
run: contigs.separate
fails
  cluster=cl_4 -> folder
[library net contigs]
run: contigs.separate cluster=cl_4
  cutoff=50 -> figures
  out=o -> folder
[library]
run: contigs.load folder=in/run
[library]
run: contigs.load_folder
fails
  folder=in/lists -> panel
[library]
run: contigs.load_folder folder=in/shared
after: contigs.names
  test=yes -> clones_in_contogs.txt
[library net contigs]
run: contigs.test no-drawings=yes no-pair-tables=yes no-ordering=yes
  out=o -> folder
  check-cutoff=40 -> *report_contigs.txt
  browse=yes -> folder
  raise-cutoff=yes -> *report_contigs.txt
  bp-per-band=2000 -> folder
  clone-length=140000 -> folder
  genome-length=5000000 -> folder
[library raw-net contigs]
before: metric.set cutoff=45
run: contigs.test no-drawings=yes no-pair-tables=yes no-ordering=yes
  largest-part=yes -> *report_contigs.txt
[library net]
before: contigs.load_folder folder=in/lists
run: contigs.test
[library net]
before: contigs.load_folder folder=in/lists
run: contigs.test ordering-steps=1000
  no-ordering=yes -> folder
  no-pair-tables=yes -> folder
  no-drawings=yes -> folder
  drawing-format=graphml -> folder
  drawing-names=no -> *.net
  drawing-numbers=yes -> *.net
  drawing-bands=no -> *.net
  drawing-burial=no -> *.net
  drawing-relations=yes -> *.net
  drawing-cutoffs=yes -> folder
  drawing-colours=no -> *.net
  drawing-scores=no -> *.net
  jackknife=3 -> *Cf15.0_p0.90.txt
[library net]
before: contigs.load_folder folder=in/wide
run: contigs.test no-drawings=yes no-ordering=yes
  from-net-only=yes -> *All_dist_w.txt
[library net contigs]
run: contigs.test no-drawings=yes no-pair-tables=yes ordering-seconds=0
  ordering-seconds=1 -> *Cf15.0_p0.90.txt
  ordering-steps=100000 -> *Cf15.0_p0.90.txt
[library net contigs]
run: contigs.test no-drawings=yes no-pair-tables=yes ordering-steps=1000 jackknife=3
  jackknife-alpha=0.5 -> *Cf15.0_p0.90.txt
[library contigs]
run: contigs.off contig=cl_3
after: contigs.lists
[library]
run: contigs.add_list list=in/list.txt
after: contigs.lists
  name=mine -> folder
  long-name=long -> *report.txt
[library contigs]
run: contigs.add_list list=in/list.txt
fails
  shared=yes -> parts
[library net contigs]
run: contigs.bar list=in/other.txt
[library contigs]
before: contigs.bar list=in/other.txt
run: contigs.black_list
  out=o -> folder
[library contigs]
before: contigs.black_list out=o
run: contigs.black_list out=o
fails
  force=yes -> status
[library contigs]
run: contigs.clusters_of
  out=o -> folder
  list=in/list.txt -> clusters_of_clones.txt
[library contigs]
before: contigs.clusters_of out=o
run: contigs.clusters_of out=o
fails
  force=yes -> status
[library contigs]
run: contigs.save_run
  out=o -> folder
[library net contigs]
run: contigs.retain old-mtp=in/list.txt
[library net contigs]
run: contigs.retain old-mtp=in/list.txt ordering-steps=1000
  out=o -> folder
  sequenced=in/other.txt -> *list_of_clones_MTP_new.tsv
  contigs=0 -> folder
  no-ordering=yes -> folder
  no-pair-tables=yes -> folder
  from-net-only=yes -> *All_dist_cl_3.txt
  no-drawings=yes -> folder
  drawing-format=graphml -> folder
  drawing-names=no -> *.net
  drawing-numbers=yes -> *.net
  drawing-bands=no -> *.net
  drawing-burial=no -> *.net
  drawing-relations=yes -> *.net
  drawing-cutoffs=yes -> folder
  drawing-colours=no -> *.net
  drawing-scores=no -> *.net
  jackknife=3 -> *Cf15.0_p0.90.txt
[library raw-net contigs]
before: metric.set cutoff=45
run: contigs.retain old-mtp=in/list.txt no-ordering=yes no-pair-tables=yes no-drawings=yes
  largest-part=yes -> *report_contigs.txt
[library net contigs]
run: contigs.retain contigs=0 old-mtp=in/list.txt no-ordering=yes no-pair-tables=yes no-drawings=yes
  raise-cutoff=yes -> *report_contigs.txt
  bp-per-band=2000 -> folder
  clone-length=140000 -> folder
  genome-length=5000000 -> folder
[library net contigs]
run: contigs.retain old-mtp=in/list.txt ordering-seconds=0
  ordering-seconds=1 -> *Cf15.0_p0.90.txt
  ordering-steps=100000 -> *Cf15.0_p0.90.txt
[library net contigs]
run: contigs.retain old-mtp=in/list.txt ordering-steps=1000 jackknife=3
  jackknife-alpha=0.5 -> *Cf15.0_p0.90.txt
[library net contigs]
run: contigs.reset
[library net contigs]
run: contigs.rename file=in/contig_names.txt
after: contigs.names
[library net contigs markers]
run: contigs.remarks
after: contigs.fpc
[library contigs]
run: contigs.statistics
  out=o -> folder
  bp-per-band=2000 -> folder
  clone-length=140000 -> folder
  genome-length=5000000 -> folder
[library contigs]
before: contigs.statistics out=o
run: contigs.statistics out=o
fails
  force=yes -> status
[library contigs]
run: contigs.coordinates
  out=o -> folder
  list=in/list.txt -> coordinates_of_clones.txt
[library contigs]
before: contigs.coordinates out=o
run: contigs.coordinates out=o
fails
  force=yes -> status
[library contigs]
run: contigs.names
  out=o -> folder
  list=in/list.txt -> clones_in_contogs.txt
[library contigs]
before: contigs.names out=o
run: contigs.names out=o
fails
  force=yes -> status
[library contigs]
run: contigs.lists
  out=o -> folder
[library contigs]
run: contigs.export out=m.tsv
fails
  to=tsv -> m.tsv
[library net contigs]
run: contigs.export to=gff3
fails
  out=m.gff3 -> m.gff3
[library net contigs]
run: contigs.export to=bed out=m.bed
  bp-per-band=900 -> m.bed
  clone-length=140000 -> m.bed
  genome-length=5000000 -> m.bed
[library contigs]
before: list.sort list=in/list.txt out=m.cor
run: contigs.export to=fpc out=m.fpc
fails
  force=yes -> m.cor
[library contigs]
run: contigs.draw_map overview=yes
fails
  out=m.png -> m.png
[library contigs markers]
run: contigs.draw_map overview=yes out=m.svg
  size=700x500 -> m.svg
[library net contigs markers]
run: contigs.draw_map out=m.svg
fails
  overview=yes -> m.svg
  contig=cl_3 -> m.svg
[library contigs]
before: list.sort list=in/list.txt out=m.pdf
run: contigs.draw_map overview=yes out=m.pdf
fails
  force=yes -> m.pdf
[library contigs]
run: contigs.fpc
  out=o -> folder
  browse=yes -> folder
[library contigs]
run: contigs.fpc
answer: Open file with list of selected = in/list.txt
  list=in/other.txt -> FPC_like.fpc
  choose=yes -> FPC_like.fpc
  long-names=yes -> FPC_like.fpc
[library contigs]
run: contigs.fpc browse=yes
  bp-per-band=2000 -> *.fpc
  clone-length=140000 -> *.fpc
  genome-length=5000000 -> *.fpc
[library contigs]
before: contigs.fpc out=o
run: contigs.fpc out=o
fails
  force=yes -> status
[library contigs markers]
run: contigs.marker_positions
  out=o -> folder
  final-only=no -> questions
[library contigs markers]
run: contigs.marker_positions
answer: Open file with lists of lists = in/list.txt
  from-lists=yes -> mmm.txt
  lists=in/columns.txt -> mmm.txt
[library contigs markers]
before: contigs.marker_positions out=o
run: contigs.marker_positions out=o
fails
  force=yes -> status
[library contigs markers]
run: contigs.marker_clones
  out=o -> folder
  spaces=yes -> clones_for_each_marker.txt
[library contigs markers]
before: contigs.marker_clones out=o
run: contigs.marker_clones out=o
fails
  force=yes -> status

# ---- assemblies of the FPC program -------------------------------------------------------------------------------

[library]
run: fpc.read
fails
  file=in/assembly.fpc -> figures
[library]
run: fpc.read file=in/assembly.fpc
  out=o -> folder
  print=no -> folder
  specified=in/zone.txt -> folder
  bp-per-band=2000 -> folder
  clone-length=140000 -> folder
  genome-length=5000000 -> folder
[library contigs]
run: fpc.read file=in/other_plate.fpc
  other-plates=yes -> figures
  keep-contigs=yes -> folder
[library net contigs]
run: fpc.compare file=in/other_plate.fpc
  out=o -> folder
  other-plates=yes -> figures
[library net contigs]
before: fpc.compare file=in/assembly.fpc out=o
run: fpc.compare file=in/assembly.fpc out=o
fails
  force=yes -> status
[library net contigs]
run: fpc.mtp
fails
  file=in/paths.txt -> figures
[library net contigs]
run: fpc.mtp file=in/paths.txt
  out=o -> folder
  drawing-format=graphml -> folder
[library]
run: fpc.specified
fails
  file=in/zone.txt -> figures
[library]
run: fpc.specified file=in/zone.txt
  out=o -> folder
[]
run: fpc.unite
fails
answer: Save all .sizes files = here.sizes
  file=in/plates/EC001.sizes -> here.sizes
[]
run: fpc.unite file=in/plates/EC001.sizes
fails
  out=u.sizes -> u.sizes
[]
run: fpc.unite file=in/plates/EC001.sizes out=u.sizes
  files=1 -> u.sizes
[]
before: fpc.unite file=in/plates/EC001.sizes out=u.sizes
run: fpc.unite file=in/plates/EC001.sizes out=u.sizes
fails
  force=yes -> status

# ---- clusters ----------------------------------------------------------------------------------------------------

[small]
run: clusters.make
answer: Open file with list of clones = in/lists/a.txt
  list=in/lists/a.txt -> figures
  choose=yes -> figures
  out=o -> folder
  slow=yes -> panels
  test=yes -> folder
  data=yes -> folder
  caption=k -> folder
  min-size=41 -> folder
[small]
run: clusters.read
fails
  file=in/clusters_of_small.txt -> figures
[small]
run: clusters.read file=in/clusters_of_a.txt
fails
  list=in/lists/a.txt -> figures
[small]
run: clusters.read file=in/clusters_of_small.txt
after: contigs.names
  caption=k -> clones_in_contogs.txt
[library net]
run: clusters.tree cutoffs=15,30
  out=o -> folder
  min-size=100 -> folder
  max-size=20 -> folder
  keep-nets=yes -> folder
[library net]
before: clusters.tree cutoffs=15,30 out=o
run: clusters.tree cutoffs=15,30 out=o
fails
  force=yes -> status
[library net]
before: contigs.load_folder folder=in/tiny
run: clusters.group
  out=o -> folder
  min-size=100 -> folder
[library net]
before: metric.set metric=k2mn cutoff=20
before: contigs.load_folder folder=in/tiny
run: clusters.group
  without-net=yes -> *clustering_cutoffs.txt

# ---- analyses of lists -------------------------------------------------------------------------------------------

[]
run: analyse.options
  preset=folder -> findings
  do=topology -> findings
[]
before: analyse.options do=net
run: analyse.options
  clear=yes -> findings
[library net]
before: analyse.options do=consecutive
run: analyse.run
fails
  lists=in/list.txt -> folder
  all=yes -> folder
[library net]
before: analyse.options do=consecutive
run: analyse.run
fails
answer: Click any file from directory = in/lists/a.txt
  folder=yes -> folder
[library net]
run: analyse.run lists=in/list.txt do=consecutive
  out=o -> folder
  do=topology -> folder
  preset=clustering -> folder
[library net]
run: analyse.run lists=in/list.txt do=net mark=in/other.txt
  mark=in/lists/a.txt -> *.net
  mark2=in/lists/c.txt -> *.net
  drawing-names=no -> *.net
  drawing-numbers=yes -> *.net
  drawing-bands=no -> *.net
  drawing-burial=no -> *.net
  drawing-relations=yes -> *.net
  drawing-cutoffs=yes -> folder
  drawing-colours=no -> *.net
  drawing-scores=no -> *.net
[library net]
run: analyse.run lists=in/list.txt do=all-pairs
  from-net-only=yes -> All_dist_list.txt
[library net]
run: analyse.run lists=in/lists/a.txt do=clustering
  caption=k -> folder
  min-size=7 -> folder
[library net]
run: analyse.run lists=in/lists/a.txt do=read-clusters
fails
  clusters=in/clusters_of_a.txt -> folder
[library net]
run: analyse.run lists=in/scattered.txt do=ordering ordering-steps=1000
  jackknife=3 -> *Cf15.0_p0.90.txt
[library net]
run: analyse.run lists=in/scattered.txt do=ordering ordering-seconds=0
  ordering-seconds=1 -> *Cf15.0_p0.90.txt
  ordering-steps=100000 -> *Cf15.0_p0.90.txt
[library net]
run: analyse.run lists=in/scattered.txt do=ordering ordering-steps=1000 jackknife=3
  jackknife-alpha=0.5 -> *Cf15.0_p0.90.txt

# ---- orders, tables, drawings ------------------------------------------------------------------------------------

[library net]
run: order.list list=in/scattered.txt
[library net]
run: order.list list=in/scattered.txt ordering-steps=1000
  out=o -> folder
  jackknife=3 -> *Cf15.0_p0.90.txt
[library net]
run: order.list list=in/scattered.txt ordering-seconds=0
  ordering-seconds=1 -> *Cf15.0_p0.90.txt
  ordering-steps=100000 -> *Cf15.0_p0.90.txt
[library net]
run: order.list list=in/scattered.txt ordering-steps=1000 jackknife=3
  jackknife-alpha=0.5 -> *Cf15.0_p0.90.txt
[library net]
run: table.pairs list=in/list.txt
  out=o -> folder
  consecutive=yes -> folder
  all-pairs=yes -> folder
  from-net=yes -> All_dist_list.txt
[library]
run: list.bands list=in/reversed.txt out=b.txt
  order=list -> b.txt
  form=lengths -> b.txt
[library]
before: list.sort list=in/list.txt out=b.txt
run: list.bands list=in/list.txt out=b.txt
fails
  force=yes -> b.txt
[library net]
run: draw.list list=in/list.txt out=d.net
  format=both -> d.graphml
  mark=in/other.txt -> d.net
  mark2=in/other.txt -> d.net
  mark3=in/other.txt -> d.net
  no-burial=yes -> d.net
  relations=yes -> d.net
  no-names=yes -> d.net
  no-bands=yes -> d.net
  no-scores=yes -> d.net
  black=yes -> d.net
  cutoffs=yes -> folder
  compare-metrics=yes -> d.net
  table=yes -> folder
[library net]
before: pvalue.load folder=in/tables
run: draw.list list=in/list.txt out=d.net
  several-metrics=yes -> folder
[library net]
run: draw.list list=in/list.txt out=d.net mark=in/other.txt
  mark-kind=2 -> d.net
  mark-value=3 -> d.net
  mark-prefix=XX -> d.net
  numbers=yes -> d.net
[library net]
before: list.sort list=in/list.txt out=d.net
run: draw.list list=in/list.txt out=d.net
fails
  force=yes -> d.net
[]
run: net.picture file=in/drawn.net
fails
  out=m.png -> m.png
[]
run: net.picture out=m.svg
fails
  file=in/drawn.net -> m.svg
[]
run: net.picture file=in/drawn.net out=m.svg
  size=700x500 -> m.svg
  scale=2 -> m.svg
  layout=circle -> m.svg
  no-captions=yes -> m.svg
  edge-captions=yes -> m.svg
  edges-above=15 -> m.svg
  edges-below=25 -> m.svg
[library net]
before: list.sort list=in/list.txt out=m.pdf
run: net.picture file=in/drawn.net out=m.pdf
fails
  force=yes -> m.pdf
[library net contigs]
run: contigs.picture out=m.svg
fails
  contig=cl_4 -> m.svg
  all=yes -> m_cl_4.svg
  list=in/list.txt -> m.svg
[library net contigs]
run: contigs.picture contig=cl_4
fails
  out=m.svg -> m.svg
[library net contigs]
run: contigs.picture contig=cl_4 out=m.svg
  colours=burial -> m.svg
  layout=circle -> m.svg
  size=700x500 -> m.svg
  scale=2 -> m.svg
  no-captions=yes -> m.svg
  edge-captions=yes -> m.svg
  edges-above=40 -> m.svg
  edges-below=40 -> m.svg
[library net contigs]
before: list.sort list=in/list.txt out=m.pdf
run: contigs.picture contig=cl_4 out=m.pdf
fails
  force=yes -> m.pdf
[]
run: net.layout out=m.tsv
fails
  file=in/drawn.net -> m.tsv
[]
run: net.layout file=in/drawn.net
fails
  out=m.tsv -> m.tsv
[]
run: net.layout file=in/drawn.net out=m.tsv
  layout=own -> m.tsv
[library net]
before: list.sort list=in/list.txt out=m.tsv
run: net.layout file=in/drawn.net out=m.tsv
fails
  force=yes -> m.tsv
[]
run: net.view
  file=in/drawn.net -> figures
[]
run: net.view file=in/drawn.net do=mnuOptions_Multilevel picture=v.svg
  do=mnuSelectAll -> figures
  size=700x500 -> v.svg
  out=v.net -> v.net
[]
run: net.view file=in/drawn.net
  picture=v.svg -> v.svg
[library net]
before: list.sort list=in/list.txt out=v.net
run: net.view file=in/drawn.net out=v.net
fails
  force=yes -> v.net
[library net]
run: draw.marked
fails
  list=in/list.txt -> *.net
[library net]
run: draw.marked list=in/list.txt mark=in/other.txt
answer: Open = in/lists/a.txt
  out=o -> folder
  drawing-names=no -> *.net
  drawing-numbers=yes -> *.net
  drawing-bands=no -> *.net
  drawing-burial=no -> *.net
  drawing-relations=yes -> *.net
  drawing-cutoffs=yes -> folder
  drawing-colours=no -> *.net
  drawing-scores=no -> *.net
  mark2=in/lists/a.txt -> *.net
  mark-two-lists=yes -> *.net
[library net]
run: draw.marked list=in/list.txt
answer: Open = in/lists/a.txt
  mark=in/other.txt -> *.net
  mark-list=yes -> *.net
[library net]
run: draw.vertices
fails
  list=in/list.txt -> *.net
[library net]
before: list.sort list=in/list.txt out=m.net
run: draw.vertices list=in/list.txt out=m.net
fails
  force=yes -> m.net
[library net]
run: draw.vertices list=in/list.txt out=o.net
  mark=color=Red=in/other.txt -> o.net
  mark=name==in/other.txt -> o.net
  cutoff=40 -> o.net
  out=p.net -> p.net
[library net]
run: draw.two_metrics
fails
  list=in/list.txt -> *.net
[library net]
run: draw.two_metrics list=in/list.txt
  mark=in/other.txt -> *.net
[library net]
run: draw.two_metrics list=in/list.txt mark=in/other.txt
  out=o -> folder
  drawing-names=no -> *.net
  drawing-numbers=yes -> *.net
  drawing-bands=no -> *.net
  drawing-burial=no -> *.net
  drawing-relations=yes -> *.net
  drawing-scores=no -> *.net
[library net]
run: draw.folder
fails
answer: Click any = in/lists/a.txt
  list=in/list.txt -> *.net
[library net]
run: draw.folder list=in/list.txt
fails
  folder=in/lists -> folder
[library net]
run: draw.folder list=in/list.txt folder=in/lists
  out=o -> folder
  drawing-names=no -> *.net
  drawing-numbers=yes -> *.net
  drawing-bands=no -> *.net
  drawing-burial=no -> *.net
  drawing-relations=yes -> *.net
  drawing-cutoffs=yes -> folder
  drawing-colours=no -> *.net
  drawing-scores=no -> *.net

# ---- p-values ----------------------------------------------------------------------------------------------------

[]
run: pvalue.score n1=100 n2=90 k=40
  metric=Soderlund_1997 -> lines
  n-bands=3000 -> lines
  preset=5 -> lines
[]
run: pvalue.score n1=100 n2=90 k=40 metric=Soderlund_1997
  tolerance=5 -> lines
  tolerance-index=0 -> lines
  gel-length=40000 -> lines
[library]
run: pvalue.estimate n1=60 n2=50 out=o runs=200
  runs=300 -> figures
  iid=yes -> figures
[library]
run: pvalue.estimate n1=60 n2=50 out=o
[library]
before: pvalue.estimate n1=60 n2=50 out=o runs=100
run: pvalue.estimate n1=60 n2=50 out=o runs=200
fails
  force=yes -> figures
[one]
run: pvalue.table out=o
[library]
run: pvalue.table out=o runs=50
  runs=60 -> o/parameters_a0_fr.txt
  min-bands=60 -> notes
  step=50 -> notes
  steps=1 -> notes
  iid=yes -> folder
[library]
before: pvalue.table out=o runs=50 steps=1
run: pvalue.table out=o runs=50
fails
  force=yes -> o/parameters_a0_iid.txt
[]
run: pvalue.lookup folder=in/tables n1=60 n2=60
fails
  count=20 -> lines
  value=3 -> lines
[]
run: pvalue.lookup folder=in/tables n1=60 n2=60 count=20
  mode=fr -> lines
[]
run: pvalue.preset preset=4 out=o
[]
run: pvalue.preset preset=4 out=o runs=50
  runs=60 -> figures
[]
before: pvalue.preset preset=4 out=o runs=50
run: pvalue.preset preset=4 out=o runs=60
fails
  force=yes -> figures

# ---- simulation --------------------------------------------------------------------------------------------------

[]
run: simulate.library genome=in/genome.fa out=o
[]
run: simulate.library genome=in/genome.fa out=o clones=60 mean-length=8000 length-deviation=1000 min-bands=3
  clones=70 -> figures
  mean-length=9000 -> o/truth.tsv
  length-deviation=3000 -> o/truth.tsv
  chimeras=0.5 -> figures
  clone-site=GAATTC -> o/truth.tsv
  longest-gap=10 -> o/truth.tsv
  min-bands=10 -> figures
  max-bands=20 -> figures
  gel=agarose -> o/DataBase_Simul.sizes
  keep=all -> figures
  min-band-length=100 -> o/DataBase_Simul.sizes
  max-band-length=300 -> o/DataBase_Simul.sizes
  scale=10 -> o/DataBase_Simul.sizes
  shift=20000 -> o/DataBase_Simul.sizes
  merge=100 -> o/DataBase_Simul.sizes
  error=1 -> o/DataBase_Simul.sizes
  lost=0.3 -> o/DataBase_Simul.sizes
[]
run: simulate.library genome=in/genome.fa out=o mean-length=8000 length-deviation=1000 min-bands=3
  coverage=5 -> figures
[]
run: simulate.library genome=in/genome.fa out=o clones=60 mean-length=8000 length-deviation=1000 min-bands=3 chimeras=0.5
  max-parts=5 -> o/truth.tsv
[]
before: simulate.library genome=in/genome.fa out=o clones=60 mean-length=8000 length-deviation=1000 min-bands=3
run: simulate.library genome=in/genome.fa out=o clones=70 mean-length=8000 length-deviation=1000 min-bands=3
fails
  force=yes -> figures
[]
run: simulate.digest genome=in/genome.fa out=o
  part-length=5000 -> o/enz_EcoRI_statistics.txt
  gel=agarose -> o/fingerprints.sizes
  min-band-length=100 -> o/fingerprints.sizes
  max-band-length=300 -> o/fingerprints.sizes
  scale=10 -> o/fingerprints.sizes
  shift=20000 -> o/fingerprints.sizes
  merge=100 -> o/fingerprints.sizes
[]
before: simulate.digest genome=in/genome.fa out=o
run: simulate.digest genome=in/genome.fa out=o scale=10
fails
  force=yes -> o/fingerprints.sizes

# ---- pools, band maps -----------------------------------------------------------------------------------------------

[]
run: order.tour
fails
  file=in/Input.dis -> lines
[]
run: order.tour file=in/Input.dis
  fixed-ends=yes -> lines
  tree=yes -> lines
  steps=2000 -> parameters
[library]
run: pools.load
fails
[library]
run: pools.load prefix=EC
fails
  file=in/recoding.txt -> figures
[library]
run: pools.load file=in/recoding.txt
fails
  prefix=EC -> figures
[library]
run: pools.load file=in/recoding.txt prefix=EC
after: pools.table out=o
  plates=3 -> o/filling_of_tables.txt
  rows=17 -> o/filling_of_tables.txt
  columns=25 -> o/filling_of_tables.txt
[library]
before: pools.load file=in/recoding.txt prefix=EC
run: pools.table
  out=o -> folder
[library]
before: pools.load file=in/recoding.txt prefix=EC
run: pools.of_clones
fails
[library]
before: pools.load file=in/recoding.txt prefix=EC
run: pools.of_clones out=o
fails
  list=in/list.txt -> o/pools_for_clones_list.txt
[library]
before: pools.load file=in/recoding.txt prefix=EC
before: list.sort list=in/list.txt out=l.txt
run: pools.of_clones list=l.txt
  out=o -> folder
[library net]
before: pools.load file=in/recoding.txt prefix=EC
run: pools.find
fails
  file=in/positive.txt -> clones_PxPxP.txt
[library net]
before: pools.load file=in/recoding.txt prefix=EC
answer: Inuput rank = 0
run: pools.find file=in/positive.txt
  out=o -> folder
  subdivide=yes -> folder
[library net]
before: pools.load file=in/recoding.txt prefix=EC
answer: Inuput rank = 0
run: pools.find file=in/positive.txt subdivide=yes
  rank=1 -> in pools_.txt
[library net]
before: pools.load file=in/recoding.txt prefix=EC
run: pools.deconvolve
fails
[library net]
before: pools.load file=in/recoding.txt prefix=EC
run: pools.deconvolve out=o
fails
  probes=in/probes.txt -> o/res_for_deconv.txt
[library net]
before: pools.load file=in/recoding.txt prefix=EC
run: pools.deconvolve probes=in/probes.txt out=o
  out=p -> folder
  likelihood=yes -> folder
[library net]
before: pools.load file=in/recoding.txt prefix=EC
run: pools.deconvolve probes=in/probes.txt out=o likelihood=yes
  missing-rate=0.3 -> o/likelihood.txt
  false-rate=0.1 -> o/likelihood.txt
  max-places=1 -> o/likelihood.txt
  best=1 -> o/likelihood.txt
[library]
run: bandmap.make list=in/list.txt
  out=o -> folder
  alignments=yes -> folder
  groups=yes -> band_map_groups.txt
  expected-lost=0.4 -> band_map.txt
  simulate=yes -> band_map_simulation.txt
[library]
run: bandmap.make list=in/list.txt simulate=yes
  coverage=5 -> band_map_simulation.txt
  lost=0.2 -> band_map_simulation.txt
  false=0.2 -> band_map_simulation.txt
  error=1 -> band_map_simulation.txt
[library]
run: bandmap.make list=in/scattered.txt tour-steps=1
  tour-steps=3000 -> band_map.txt

# ---- reports -----------------------------------------------------------------------------------------------------

[]
run: info.show paths=in/library.ORBdb
  clone=EC001A01 -> lines
  json=yes -> lines
[]
run: contigs.evaluate folder=in/run truth=in/plates/truth.tsv
  q-clones=in/list.txt -> lines
  genome-length=4000000 -> lines
  json=yes -> lines
  out=o -> folder
[]
before: contigs.evaluate folder=in/run truth=in/plates/truth.tsv out=o
run: contigs.evaluate folder=in/run truth=in/plates/truth.tsv out=o genome-length=4000000
fails
  force=yes -> o/evaluation.json
)cases";

} // namespace option_test
