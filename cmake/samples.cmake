# The samples that an installation brings, those of examples/ but for Windows; what else lies there is not ours.

set(samples
  README.md
  biology.form.json
  biology.xml
  merge.cpp
  mixed.form.json
  mixed.xml
  versions/refused-answer.xml
  versions/refused-count.xml
  versions/refused-distractors.xml
  versions/refused-identifier.xml
  versions/refused-question.xml
  versions/refused-sections.xml
  versions/refused-version-exists.xml
  versions/unit-a.xml
  versions/unit-b.xml
  versions/unit-c.xml
  versions/unit-d.xml
  versions/unit.form.json
)
